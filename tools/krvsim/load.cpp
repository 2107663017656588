#include <limits>

#include "embedded/farms/servers.h"
#include "embedded/model/farm.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/farm_query.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

struct LoadOptions {
    std::string server = ".";
    std::string jukebox;  // name, or "@" and ID
    std::string type;     // of new media
    std::string label;    // empty = they are blank
    int32_t count = 1;
    bool doubleSided = false;
    std::string fromExport;         // a jukebox whose exported media come back
    std::optional<int32_t> volume;  // the medium that holds it, from an export station or the shelf
};

struct UnloadOptions {
    std::string server = ".";
    std::string jukebox;  // name, or "@" and ID; empty = all of them
};

constexpr auto kImport = static_cast<int64_t>(Place::ImportStation);
constexpr auto kExport = static_cast<int64_t>(Place::ExportStation);
constexpr auto kShelf = static_cast<int64_t>(Place::Shelf);

// The number of the next medium in a station or on the shelf.
int64_t NextNumber(Database& database, int64_t place, int64_t jukebox) {
    return FindNumber(database,
                      "SELECT max(slot) + 1 FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0",
                      {place, jukebox})
        .value_or(0);
}

void Move(Database& database, int64_t medium, int64_t place, int64_t jukebox) {
    Execute(database, "UPDATE medium SET place = ?2, jukebox = ?3, magazine = 0, slot = ?4 WHERE id = ?1",
            {medium, place, jukebox, NextNumber(database, place, jukebox)});
}

// The media of an export station, the oldest first.
std::vector<int64_t> ExportedMedia(Database& database, int64_t jukebox) {
    std::vector<int64_t> media;
    ForEachRow(database, "SELECT id FROM medium WHERE place = ?1 AND jukebox = ?2 ORDER BY slot",
               {kExport, jukebox}, [&](const Row& row) { media.push_back(row.Integer(0)); });
    return media;
}

// A volume that was never imported: its ID is below 0.
int64_t AddNewVolume(Database& database, const MediaType& type, const std::string& label) {
    const int64_t id =
        FindNumber(database, "SELECT min(id, 0) - 1 FROM (SELECT min(id) AS id FROM volume)", {})
            .value_or(-1);
    const char* fileSystem = type.access == Access::Random ? "UDF 2.01" : "UDF 1.50 seq";
    Execute(database, "INSERT INTO volume VALUES (?1, 0, 2, 1, ?2, ?3, ?4, 0, -1, 0)",
            {id, std::string(fileSystem), label, static_cast<int64_t>(type.capacity)});
    return id;
}

void AddSide(Database& database, int64_t medium, int64_t number, const FarmSide& side) {
    Execute(database, "INSERT INTO side VALUES (?1, ?2, ?3, ?4, ?5, ?6, 0)",
            {medium, number, static_cast<int64_t>(side.content), static_cast<int64_t>(side.finalization),
             int64_t{side.sequential ? 1 : 0},
             side.volume == 0 ? Value(nullptr) : Value(static_cast<int64_t>(side.volume))});
}

// Several media are numbered, two sides lettered: "Sales 2 A".
std::string LabelOf(const LoadOptions& options, int32_t number, int side) {
    std::string label = options.label;
    if (options.count > 1) label += " " + std::to_string(number);
    if (options.doubleSided) label += side == 0 ? " A" : " B";
    return label;
}

// Labels must fit into the record that shows them.
void RequireShortLabels(const LoadOptions& options) {
    constexpr size_t kMaxLength = sizeof(VolumeRecord::label) - 1;
    const std::string last = LabelOf(options, options.count, 1);
    if (options.label.empty() || last.size() <= kMaxLength) return;
    throw UsageFailure("the label \"" + last + "\" is " + std::to_string(last.size()) +
                       " bytes long; the limit is " + std::to_string(kMaxLength));
}

void LoadNew(Database& database, const LoadOptions& options, int32_t jukebox) {
    const MediaType* type = FindMediaType(options.type);
    if (type == nullptr) {
        std::string message = "unknown media type \"" + options.type + "\"; the types are:";
        for (const MediaType& known : AllMediaTypes())
            message.append("\n  ").append(known.name);
        throw ToolFailure(message);
    }
    for (int32_t number = 1; number <= options.count; ++number) {
        Execute(
            database,
            "INSERT INTO medium (type, sides, place, jukebox, magazine, slot) VALUES (?1, ?2, ?3, ?4, 0, ?5)",
            {int64_t{type->code}, int64_t{options.doubleSided ? 2 : 1}, kImport, int64_t{jukebox},
             NextNumber(database, kImport, jukebox)});
        const int64_t medium = sqlite3_last_insert_rowid(database.GetConnection());
        for (int side = 0; side < (options.doubleSided ? 2 : 1); ++side) {
            if (options.label.empty()) {
                AddSide(database, medium, side, UsualSide(type->code, Content::Blank, 0));
                continue;
            }
            const int64_t volume = AddNewVolume(database, *type, LabelOf(options, number, side));
            AddSide(database, medium, side,
                    UsualSide(type->code, Content::FileSystem, static_cast<int32_t>(volume)));
        }
    }
}

// The medium of a volume in an export station or on the shelf.
int64_t FindMediumOf(Database& database, int32_t volume) {
    const auto place = FindNumber(database,
                                  "SELECT d.place FROM side i CROSS JOIN medium d ON d.id = i.medium "
                                  "WHERE i.volume = ?1 ORDER BY i.part",
                                  {int64_t{volume}});
    const std::string name = "volume " + std::to_string(volume);
    if (!place.has_value()) throw ToolFailure(name + " is on no medium");
    if (place == kImport) throw ToolFailure(name + " is already in an import station");
    const bool isOutside = *place == kExport || *place == kShelf;
    if (!isOutside) throw ToolFailure(name + " is in a slot; export its medium first");
    return *FindNumber(database, "SELECT medium FROM side WHERE volume = ?1 ORDER BY part",
                       {int64_t{volume}});
}

void Load(const LoadOptions& options, const Streams& streams) {
    const int given = (options.type.empty() ? 0 : 1) + (options.fromExport.empty() ? 0 : 1) +
                      (options.volume.has_value() ? 1 : 0);
    if (given == 0) throw UsageFailure("--type, --from-export or --volume is required");
    if (given > 1) throw UsageFailure("--type, --from-export and --volume exclude each other");
    RequireShortLabels(options);
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t loaded = 0;
    int64_t waiting = 0;
    InTransaction(*database, [&] {
        const int32_t jukebox = FindJukebox(*database, options.jukebox);
        const int64_t before = NextNumber(*database, kImport, jukebox);
        if (!options.type.empty()) {
            LoadNew(*database, options, jukebox);
        } else if (options.volume.has_value()) {
            Move(*database, FindMediumOf(*database, *options.volume), kImport, jukebox);
        } else {
            for (const int64_t medium :
                 ExportedMedia(*database, FindJukebox(*database, options.fromExport))) {
                Move(*database, medium, kImport, jukebox);
            }
        }
        loaded = NextNumber(*database, kImport, jukebox) - before;
        waiting = *FindNumber(*database, "SELECT count(*) FROM medium WHERE place = ?1 AND jukebox = ?2",
                              {kImport, int64_t{jukebox}});
    });
    streams.out << "Loaded " << Counted(loaded, "medium", "media") << "; "
                << Counted(waiting, "waits", "wait") << " for import.\n";
}

void Unload(const UnloadOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t unloaded = 0;
    InTransaction(*database, [&] {
        std::vector<int64_t> jukeboxes;
        if (!options.jukebox.empty()) {
            jukeboxes.push_back(FindJukebox(*database, options.jukebox));
        } else {
            ForEachRow(*database, "SELECT id FROM jukebox ORDER BY id", {},
                       [&](const Row& row) { jukeboxes.push_back(row.Integer(0)); });
        }
        for (const int64_t jukebox : jukeboxes) {
            for (const int64_t medium : ExportedMedia(*database, jukebox)) {
                Move(*database, medium, kShelf, 0);
                ++unloaded;
            }
        }
    });
    streams.out << "Moved " << Counted(unloaded, "medium", "media") << " to the shelf.\n";
}

void AddLoadItself(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "load", "Put media into the import station of a jukebox.", Load);
    AddServerOption(app, options.server);
    app.add_option("--jukebox,-J", options.jukebox, "jukebox, by name or as @ID")->required();
    CLI::Option* type =
        app.add_option("--type", options.type, "add new media of this type, such as \"DVD-RAM\"");
    app.add_option("--label", options.label, "label of the volumes on new media; without it, they are blank")
        ->needs(type);
    app.add_option("--count", options.count, "number of new media")
        ->capture_default_str()
        ->check(FromTo(1, 100'000))
        ->needs(type);
    app.add_flag("--double-sided", options.doubleSided, "give new media two sides")->needs(type);
    app.add_option("--from-export", options.fromExport,
                   "move all media from the export station of this jukebox");
    app.add_option("--volume,-V", options.volume,
                   "move the medium of this volume from its export station or the shelf")
        ->check(FromTo(1, std::numeric_limits<int32_t>::max()));
}

void AddUnload(CommandLine& line) {
    const auto [app, options] = line.Add(
        line.GetTool(), "unload", "Move exported media from the export stations to the shelf.", Unload);
    AddServerOption(app, options.server);
    app.add_option("--jukebox,-J", options.jukebox, "only this jukebox, by name or as @ID");
}

}  // namespace

void AddLoad(CommandLine& line) {
    AddLoadItself(line);
    AddUnload(line);
}

}  // namespace embedded::tools
