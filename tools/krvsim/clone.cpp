// krvsim clone: a farm behind any client library becomes a local one.
#include "embedded/farms/farm_writer.h"
#include "tools/common/counted.h"
#include "tools/common/progress.h"
#include "tools/foreign/copy.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/new_farm.h"

namespace embedded::tools {
namespace {

int64_t PartsOf(const Farm& farm) {
    auto parts = static_cast<int64_t>(farm.volumes.size());
    for (const FarmJukebox& jukebox : farm.jukeboxes) {
        for (const FarmMagazine& magazine : jukebox.magazines)
            parts += magazine.slotCount;
    }
    return parts;
}

}  // namespace

void Clone(const CloneOptions& options, const Streams& streams) {
    const Existing existing = options.force ? Existing::Replace : Existing::Keep;
    RequireRoom(options.to, existing);
    const Farm farm = CopyFarm(options.library, options.from, streams);
    MakeFarm(options.to, existing, [&](Database& database) {
        Progress progress(streams.err, "writing", PartsOf(farm));
        WriteFarm(database, options.to, farm, [&] { progress.Step(); });
    });
    streams.out << "Server \"" << options.to << "\" has a copy of " << CountedJukeboxes(farm.jukeboxes.size())
                << " and " << CountedVolumes(farm.volumes.size()) << " of server \"" << options.from
                << "\".\n";
}

}  // namespace embedded::tools
