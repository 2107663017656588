#include <string>

#include "tools/common/command_line.h"
#include "tools/common/streams.h"
#include "tools/krvadm/tool.h"

namespace embedded::tools {
namespace {

struct NoOptions {};

void Refuse(const NoOptions& /*none*/, const Streams& /*streams*/) {
    throw ToolFailure(
        "real jukeboxes are driven on Linux only; run this command on the machine that has them");
}

// Whatever words follow, the answer is the same.
void AddLinuxOnly(CommandLine& line, const std::string& name) {
    const auto [app, none] = line.Add(line.GetTool(), name, "For real jukeboxes, on Linux only.", Refuse);
    (void)none;
    app.allow_extras();
}

}  // namespace

void AddDiscover(CommandLine& line) {
    AddLinuxOnly(line, "discover");
}

void AddAttach(CommandLine& line) {
    AddLinuxOnly(line, "attach");
    AddLinuxOnly(line, "detach");
}

void AddStatus(CommandLine& line) {
    AddLinuxOnly(line, "status");
}

void AddInventory(CommandLine& line) {
    AddLinuxOnly(line, "inventory");
}

void AddCheck(CommandLine& line) {
    AddLinuxOnly(line, "check");
}

void AddLibrary(CommandLine& line) {
    AddLinuxOnly(line, "library");
}

void AddLimits(CommandLine& line) {
    AddLinuxOnly(line, "limits");
}

}  // namespace embedded::tools
