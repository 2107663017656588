// krvsim dump: a farm as a layout file or as JSON.
#include "simulator/farms/servers.h"
#include "simulator/krvsim/commands.h"
#include "simulator/krvsim/copy.h"
#include "simulator/krvsim/failure.h"
#include "simulator/layout/farm_reader.h"
#include "simulator/layout/layout_writer.h"

namespace krvsim {

void Dump(const DumpOptions& options, const Streams& streams) {
    const bool isForeign = !options.library.empty();
    const std::string& server = isForeign ? options.from : options.server;
    const Farm farm =
        isForeign ? CopyFarm(options.library, options.from, streams) : ReadFarm(*OpenServer(options.server));
    if (options.format == Format::Json) {
        WriteJson(streams.out, server, farm);
    } else {
        WriteLayout(streams.out, server, farm);
    }
    streams.out.flush();
    if (!streams.out.good()) throw ToolFailure("the output cannot be written");
}

}  // namespace krvsim
