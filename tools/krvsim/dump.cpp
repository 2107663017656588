#include "embedded/farms/farm_reader.h"
#include "embedded/farms/servers.h"
#include "embedded/layout/json_writer.h"
#include "embedded/layout/layout_writer.h"
#include "tools/common/command_line.h"
#include "tools/krvsim/tool.h"
#include "tools/library_reader/farm_copy.h"

namespace embedded::tools {
namespace {

enum class Format { Toml, Json };

struct DumpOptions {
    std::string server = ".";
    std::string library;     // empty = the farm of `server`; else a client library
    std::string from = ".";  // the server to read through the library
    Format format = Format::Toml;
};

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
}

}  // namespace

void AddDump(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "dump", "Write a farm as a layout file or as JSON.", Dump);
    CLI::Option* server = AddServerOption(app, options.server);
    CLI::Option* library =
        app.add_option("--library", options.library, "read through this client library (a file)");
    CLI::Option* from =
        app.add_option("--from", options.from, "server to read through the library")->capture_default_str();
    server->excludes(library);
    from->needs(library);
    const std::map<std::string, Format> formats = {{"toml", Format::Toml}, {"json", Format::Json}};
    app.add_option("--format", options.format, "toml or json")
        ->transform(CLI::CheckedTransformer(formats).description(""))
        ->type_name("FORMAT")
        ->default_str("toml");
}

}  // namespace embedded::tools
