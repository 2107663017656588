#include "embedded/farms/farm_writer.h"
#include "tools/common/command_line.h"
#include "tools/common/long_task.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/new_farm.h"
#include "tools/krvsim/tool.h"
#include "tools/library_reader/farm_copy.h"

namespace embedded::tools {
namespace {

struct CloneOptions {
    CopyOptions source;
    std::string to;
    Existing existing = Existing::Keep;
};

// How many steps the writing takes.
int64_t PartsOf(const Farm& farm) {
    auto parts = static_cast<int64_t>(farm.volumes.size());
    for (const FarmJukebox& jukebox : farm.jukeboxes) {
        for (const FarmMagazine& magazine : jukebox.magazines)
            parts += magazine.slotCount;
    }
    return parts;
}

void Clone(const CloneOptions& options, const Streams& streams) {
    RequireRoom(options.to, options.existing);
    const FarmCopy copy = CopyFarm(options.source, streams);
    const Farm& farm = copy.farm;
    MakeFarm(options.to, options.existing, [&](Database& database) {
        Progress progress(streams.err, "writing", PartsOf(farm));
        WriteFarm(database, options.to, farm, [&] { progress.Step(); });
    });
    streams.out << "Server \"" << options.to << "\" has a copy of "
                << Counted(std::ssize(farm.jukeboxes), "jukebox", "jukeboxes") << " and "
                << Counted(std::ssize(farm.volumes), "volume", "volumes") << " of server \""
                << options.source.from << "\".\n";
    RequireComplete(copy, options.source);
}

}  // namespace

void AddClone(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "clone",
                 "Copy a farm through a client library, without changing the original.", Clone);
    CLI::Option* library =
        app.add_option("--library", options.source.library, "client library (a file)")->required();
    app.add_option("--from", options.source.from, "server to copy")->capture_default_str();
    app.add_option("--to", options.to, "server that gets the copy")->required();
    AddForceOption(app, options.existing);
    AddCopyOptions(app, *library, options.source);
}

}  // namespace embedded::tools
