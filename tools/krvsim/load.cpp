#include <limits>

#include "embedded/farms/servers.h"
#include "embedded/model/farm.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/journal/call_items.h"
#include "tools/krvsim/new_media.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

struct LoadOptions {
    std::string server = ".";
    std::string jukebox;            // name, or "@" and ID
    NewMedia media;                 // without a type, none
    std::string fromExport;         // a jukebox whose exported media come back
    std::optional<int32_t> volume;  // the medium that holds it, from an export station or the shelf
};

struct UnloadOptions {
    std::string server = ".";
    std::string jukebox;  // name, or "@" and ID; empty = all of them
};

constexpr Sql kMoveMedium = R"sql(
    UPDATE medium SET place = ?2, jukebox = ?3, magazine = 0, slot = ?4 WHERE id = ?1
)sql";
constexpr Sql kMediaInStation = R"sql(
    SELECT id FROM medium WHERE place = ?1 AND jukebox = ?2 ORDER BY slot
)sql";
constexpr Sql kCountInStation = R"sql(
    SELECT count(*) FROM medium WHERE place = ?1 AND jukebox = ?2
)sql";

constexpr Sql kMediumOfVolume = R"sql(
    SELECT d.id, d.place FROM side i CROSS JOIN medium d ON d.id = i.medium
    WHERE i.volume = ?1 ORDER BY i.part
)sql";

void Move(Database& database, int64_t medium, Place place, int32_t jukebox) {
    Run(database, kMoveMedium, medium, place, jukebox, NextNumber(database, place, jukebox));
}

// The media of an export station, the oldest first.
std::vector<int64_t> ExportedMedia(Database& database, int32_t jukebox) {
    return FindValues<int64_t>(database, kMediaInStation, Place::ExportStation, jukebox);
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
    const int given = (options.media.type.empty() ? 0 : 1) + (options.fromExport.empty() ? 0 : 1) +
                      (options.volume.has_value() ? 1 : 0);
    if (given == 0) throw UsageFailure("--type, --from-export or --volume is required");
    if (given > 1) throw UsageFailure("--type, --from-export and --volume exclude each other");
    RequireShortLabels(options.media);
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
    int64_t loaded = 0;
    int64_t waiting = 0;
    InTransaction(*database, [&] {
        const int32_t jukebox = FindJukebox(*database, options.jukebox);
        const int64_t before = NextNumber(*database, Place::ImportStation, jukebox);
        if (!options.media.type.empty()) {
            AddNewMedia(*database, options.media, jukebox);
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
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
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
        app.add_option("--type", options.media.type, "add new media of this type, such as \"DVD-RAM\"");
    app.add_option("--label", options.media.label,
                   "label of the volumes on new media; without it, they are blank")
        ->needs(type);
    app.add_option("--count", options.media.count, "number of new media")
        ->capture_default_str()
        ->check(FromTo(1, 100'000))
        ->needs(type);
    app.add_flag("--double-sided", options.media.doubleSided, "give new media two sides")->needs(type);
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
