// krvsim load and unload: what a person does at a jukebox's stations.
#include "embedded/farms/servers.h"
#include "embedded/model/farm.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "embedded/store/transaction.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "tools/common/command.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/farm_query.h"

namespace embedded::tools {
namespace {

constexpr auto kImport = static_cast<int64_t>(Place::ImportStation);
constexpr auto kExport = static_cast<int64_t>(Place::ExportStation);
constexpr auto kShelf = static_cast<int64_t>(Place::Shelf);

int64_t EndOf(Database& database, int64_t place, int64_t jukebox) {
    return FindNumber(database,
                      "SELECT max(slot) + 1 FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0",
                      {place, jukebox})
        .value_or(0);
}

void Move(Database& database, int64_t medium, int64_t place, int64_t jukebox) {
    Execute(database, "UPDATE medium SET place = ?2, jukebox = ?3, magazine = 0, slot = ?4 WHERE id = ?1",
            {medium, place, jukebox, EndOf(database, place, jukebox)});
}

// The media of an export station, the oldest first.
std::vector<int64_t> Exported(Database& database, int64_t jukebox) {
    std::vector<int64_t> media;
    ForEachRow(database, "SELECT id FROM medium WHERE place = ?1 AND jukebox = ?2 ORDER BY slot",
               {kExport, jukebox}, [&](const Row& row) { media.push_back(row.Integer(0)); });
    return media;
}

// A volume that the service has never seen, below 0 until its import.
int64_t AddUnseenVolume(Database& database, const MediaType& type, const std::string& label) {
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

// With several media, and with two sides, the labels are numbered.
std::string LabelOf(const LoadOptions& options, int32_t number, int side) {
    std::string label = options.label;
    if (options.count > 1) label += " " + std::to_string(number);
    if (options.doubleSided) label += side == 0 ? " A" : " B";
    return label;
}

// A label has to fit into the record that shows it.
void RequireShortLabels(const LoadOptions& options) {
    constexpr size_t kLongest = sizeof(VolumeRecord::label) - 1;
    const std::string last = LabelOf(options, options.count, 1);
    if (options.label.empty() || last.size() <= kLongest) return;
    throw UsageFailure("the label \"" + last + "\" has " + std::to_string(last.size()) + " bytes, at most " +
                       std::to_string(kLongest) + " are allowed");
}

void LoadNew(Database& database, const LoadOptions& options, int32_t jukebox) {
    const MediaType* type = FindMediaType(options.type);
    if (type == nullptr) {
        std::string message = "there is no media type \"" + options.type + "\"; the types are:";
        for (const MediaType& known : AllMediaTypes())
            message.append("\n  ").append(known.name);
        throw ToolFailure(message);
    }
    for (int32_t number = 1; number <= options.count; ++number) {
        Execute(
            database,
            "INSERT INTO medium (type, sides, place, jukebox, magazine, slot) VALUES (?1, ?2, ?3, ?4, 0, ?5)",
            {int64_t{type->code}, int64_t{options.doubleSided ? 2 : 1}, kImport, int64_t{jukebox},
             EndOf(database, kImport, jukebox)});
        const int64_t medium = sqlite3_last_insert_rowid(database.GetConnection());
        for (int side = 0; side < (options.doubleSided ? 2 : 1); ++side) {
            if (options.label.empty()) {
                AddSide(database, medium, side, UsualSide(type->code, Content::Blank, 0));
                continue;
            }
            const int64_t volume = AddUnseenVolume(database, *type, LabelOf(options, number, side));
            AddSide(database, medium, side,
                    UsualSide(type->code, Content::FileSystem, static_cast<int32_t>(volume)));
        }
    }
}

// The medium of a volume that is outside of all slots.
int64_t FindMediumOf(Database& database, int32_t volume) {
    const auto place = FindNumber(database,
                                  "SELECT d.place FROM side i CROSS JOIN medium d ON d.id = i.medium "
                                  "WHERE i.volume = ?1 ORDER BY i.part",
                                  {int64_t{volume}});
    const std::string name = "volume " + std::to_string(volume);
    if (!place.has_value()) throw ToolFailure(name + " is on no medium");
    if (place == kImport) throw ToolFailure(name + " waits in an import station already");
    const bool isOutside = *place == kExport || *place == kShelf;
    if (!isOutside) throw ToolFailure(name + " is in a slot; export its medium first");
    return *FindNumber(database, "SELECT medium FROM side WHERE volume = ?1 ORDER BY part",
                       {int64_t{volume}});
}

}  // namespace

void Load(const LoadOptions& options, const Streams& streams) {
    const int given = (options.type.empty() ? 0 : 1) + (options.fromExport.empty() ? 0 : 1) +
                      (options.volume.has_value() ? 1 : 0);
    if (given == 0) throw UsageFailure("one of --type, --from-export and --volume is needed");
    if (given > 1) throw UsageFailure("only one of --type, --from-export and --volume can be given");
    RequireShortLabels(options);
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t loaded = 0;
    int64_t waiting = 0;
    InTransaction(*database, [&] {
        const int32_t jukebox = FindJukebox(*database, options.jukebox);
        const int64_t before = EndOf(*database, kImport, jukebox);
        if (!options.type.empty()) {
            LoadNew(*database, options, jukebox);
        } else if (options.volume.has_value()) {
            Move(*database, FindMediumOf(*database, *options.volume), kImport, jukebox);
        } else {
            for (const int64_t medium : Exported(*database, FindJukebox(*database, options.fromExport))) {
                Move(*database, medium, kImport, jukebox);
            }
        }
        loaded = EndOf(*database, kImport, jukebox) - before;
        waiting = *FindNumber(*database, "SELECT count(*) FROM medium WHERE place = ?1 AND jukebox = ?2",
                              {kImport, int64_t{jukebox}});
    });
    streams.out << "Loaded " << loaded << (loaded == 1 ? " medium" : " media") << "; " << waiting
                << (waiting == 1 ? " waits" : " wait") << " for import.\n";
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
            for (const int64_t medium : Exported(*database, jukebox)) {
                Move(*database, medium, kShelf, 0);
                ++unloaded;
            }
        }
    });
    streams.out << "Put " << unloaded << (unloaded == 1 ? " medium" : " media") << " on the shelf.\n";
}

}  // namespace embedded::tools
