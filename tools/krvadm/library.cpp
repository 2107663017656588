#include "embedded/platform/platform.h"
#include "tools/krvadm/common_options.h"

namespace embedded::tools {
namespace {

struct LibraryOptions {};

// krvcmd finds its client library as this program would; the module is beside it.
void Library(const LibraryOptions& /*none*/, const Streams& streams) {
    const std::filesystem::path library = FindClientLibrary();
    if (library.empty())
        throw ToolFailure("no client library is found; install the package krvcmd-simulator");
    streams.out << "Client library  " << PathText(library) << '\n';
    const std::filesystem::path module = library.parent_path() / "libkrvJukebox64.so";
    std::error_code ignored;
    if (!std::filesystem::exists(module, ignored)) {
        throw ToolFailure(PathText(module) +
                          " is missing; without it the client library reaches simulated jukeboxes only");
    }
    streams.out << "Jukebox module  " << PathText(module) << '\n';
}

}  // namespace

void AddLibrary(CommandLine& line) {
    line.Add(line.GetTool(), "library", "Show the client library that krvcmd loads, and its module.",
             Library);
}

}  // namespace embedded::tools
