#include <limits>

#include "embedded/farms/servers.h"
#include "embedded/model/farm.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "embedded/store/statement.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/call_items.h"
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

constexpr Sql kEndOfStation = R"sql(
    SELECT max(slot) + 1 FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0
)sql";
constexpr Sql kMoveMedium = R"sql(
    UPDATE medium SET place = ?2, jukebox = ?3, magazine = 0, slot = ?4 WHERE id = ?1
)sql";
constexpr Sql kMediaInStation = R"sql(
    SELECT id FROM medium WHERE place = ?1 AND jukebox = ?2 ORDER BY slot
)sql";
constexpr Sql kCountInStation = R"sql(
    SELECT count(*) FROM medium WHERE place = ?1 AND jukebox = ?2
)sql";

constexpr Sql kNextUnseenVolume = R"sql(
    SELECT min(id, 0) - 1 FROM (SELECT min(id) AS id FROM volume)
)sql";
constexpr Sql kAddVolume = R"sql(
    INSERT INTO volume (id, type, state, enabled, file_system, label, total, free, value1, value2)
    VALUES (?1, 0, 2, 1, ?2, ?3, ?4, 0, -1, 0)
)sql";
constexpr Sql kAddSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, ?2, ?3, ?4, ?5, nullif(?6, 0), 0)
)sql";
constexpr Sql kAddMedium = R"sql(
    INSERT INTO medium (type, sides, place, jukebox, magazine, slot) VALUES (?1, ?2, ?3, ?4, 0, ?5)
    RETURNING id
)sql";

constexpr Sql kMediumOfVolume = R"sql(
    SELECT d.id, d.place FROM side i CROSS JOIN medium d ON d.id = i.medium
    WHERE i.volume = ?1 ORDER BY i.part
)sql";

// The number of the next medium in a station or on the shelf.
int64_t NextNumber(Database& database, Place place, int32_t jukebox) {
    return FindValue<int64_t>(database, kEndOfStation, place, jukebox).value_or(0);
}

void Move(Database& database, int64_t medium, Place place, int32_t jukebox) {
    Run(database, kMoveMedium, medium, place, jukebox, NextNumber(database, place, jukebox));
}

// The media of an export station, the oldest first.
std::vector<int64_t> ExportedMedia(Database& database, int32_t jukebox) {
    return FindValues<int64_t>(database, kMediaInStation, Place::ExportStation, jukebox);
}

// A volume that was never imported: its ID is below 0.
int32_t AddNewVolume(Database& database, const MediaType& type, const std::string& label) {
    const int32_t id = FindValue<int32_t>(database, kNextUnseenVolume).value_or(-1);
    Run(database, kAddVolume, id, FileSystemName(type.access), label, type.capacity);
    return id;
}

void AddSide(Database& database, int64_t medium, int number, const FarmSide& side) {
    Run(database, kAddSide, medium, number, side.content, side.finalization, side.sequential, side.volume);
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
    const int sides = options.doubleSided ? 2 : 1;
    for (int32_t number = 1; number <= options.count; ++number) {
        const int64_t medium =
            FindValue<int64_t>(database, kAddMedium, type->code, sides, Place::ImportStation, jukebox,
                               NextNumber(database, Place::ImportStation, jukebox))
                .value_or(0);
        for (int side = 0; side < sides; ++side) {
            if (options.label.empty()) {
                AddSide(database, medium, side, UsualSide(type->code, Content::Blank, 0));
                continue;
            }
            const int32_t volume = AddNewVolume(database, *type, LabelOf(options, number, side));
            AddSide(database, medium, side, UsualSide(type->code, Content::FileSystem, volume));
        }
    }
}

// The medium of a volume in an export station or on the shelf.
int64_t FindMediumOf(Database& database, int32_t volume) {
    const std::string name = "volume " + std::to_string(volume);
    Statement row(database, kMediumOfVolume, volume);
    if (!row.Next()) throw ToolFailure(name + " is on no medium");
    const auto [medium, place] = row.Read<int64_t, Place>();
    if (place == Place::ImportStation) throw ToolFailure(name + " is already in an import station");
    const bool isOutside = place == Place::ExportStation || place == Place::Shelf;
    if (!isOutside) throw ToolFailure(name + " is in a slot; export its medium first");
    return medium;
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
        const int64_t before = NextNumber(*database, Place::ImportStation, jukebox);
        if (!options.type.empty()) {
            LoadNew(*database, options, jukebox);
        } else if (options.volume.has_value()) {
            Move(*database, FindMediumOf(*database, *options.volume), Place::ImportStation, jukebox);
        } else {
            for (const int64_t medium :
                 ExportedMedia(*database, FindJukebox(*database, options.fromExport))) {
                Move(*database, medium, Place::ImportStation, jukebox);
            }
        }
        loaded = NextNumber(*database, Place::ImportStation, jukebox) - before;
        waiting = FindValue<int64_t>(*database, kCountInStation, Place::ImportStation, jukebox).value_or(0);
    });
    streams.out << "Loaded " << Counted(loaded, "medium", "media") << "; "
                << Counted(waiting, "waits", "wait") << " for import.\n";
}

void Unload(const UnloadOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t unloaded = 0;
    InTransaction(*database, [&] {
        std::vector<int32_t> jukeboxes;
        if (!options.jukebox.empty()) {
            jukeboxes.push_back(FindJukebox(*database, options.jukebox));
        } else {
            jukeboxes = FindValues<int32_t>(*database, "SELECT id FROM jukebox ORDER BY id");
        }
        for (const int32_t jukebox : jukeboxes) {
            for (const int64_t medium : ExportedMedia(*database, jukebox)) {
                Move(*database, medium, Place::Shelf, 0);
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
