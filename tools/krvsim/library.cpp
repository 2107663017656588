#include "embedded/platform/platform.h"
#include "tools/common/command_line.h"
#include "tools/krvsim/tool.h"
#include "tools/rehearsal/simulated_library.h"

namespace embedded::tools {
namespace {

struct LibraryOptions {};

void Library(const LibraryOptions& /*none*/, const Streams& streams) {
    streams.out << PathText(FindSimulatedLibrary().parent_path()) << '\n';
}

}  // namespace

void AddLibrary(CommandLine& line) {
    line.Add(line.GetTool(), "library", "Print the folder of the simulated client library.", Library);
}

}  // namespace embedded::tools
