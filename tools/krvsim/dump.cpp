// krvsim dump: a farm as a layout file or as JSON.
#include "embedded/farms/farm_reader.h"
#include "embedded/farms/servers.h"
#include "embedded/layout/layout_writer.h"
#include "tools/common/command.h"
#include "tools/foreign/copy.h"
#include "tools/krvsim/commands.h"

namespace embedded::tools {

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

}  // namespace embedded::tools
