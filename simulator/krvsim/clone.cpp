// krvsim clone: a farm behind any client library becomes a local one.
#include "simulator/krvsim/commands.h"
#include "simulator/krvsim/copy.h"
#include "simulator/krvsim/new_farm.h"
#include "simulator/layout/farm_writer.h"

namespace krvsim {

void Clone(const CloneOptions& options, const Streams& streams) {
    const Existing existing = options.force ? Existing::Replace : Existing::Keep;
    RequireRoom(options.to, existing);
    const Farm farm = CopyFarm(options.library, options.from, streams);
    MakeFarm(options.to, existing, [&](Database& database) { WriteFarm(database, options.to, farm); });
    streams.out << "Server \"" << options.to << "\" has a copy of " << farm.jukeboxes.size()
                << " jukeboxes and " << farm.volumes.size() << " volumes of server \"" << options.from
                << "\".\n";
}

}  // namespace krvsim
