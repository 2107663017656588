#include <string>

#include "packaging/generate/tool_rows.h"
#include "tools/common/command_line.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/fault_request.h"

namespace {

std::string FaultValues() {
    std::string presets = embedded::tools::PresetNames();
    std::erase(presets, ',');
    return presets + " <file>";
}

}  // namespace

// Fills a template of a completion script of krvsim.
int main(int argc, char** argv) {
    const embedded::tools::ValueKind kinds[] = {
        {"--server", "", "<server>"},       {"--layout", "", "<file>"},
        {"--library", "", "<file>"},        {"--from-library", "", "<file>"},
        {"--expect", "", "<file>"},         {"--report", "", "<file>"},
        {"--fault", "", FaultValues()},     {"--profile", "", "small large <file>"},
        {"--format", "", "toml json html"}, {"--side", "", "A B"},
        {"<FILE>", "", "<file>"},           {"<A>", "diff", "<server>"},
        {"<B>", "diff", "<server>"},        {"<NAME>", "restore", "<snapshot>"},
        {"<NAME>", "remove", "<snapshot>"}, {"<COMMAND>", "run", "<command>"},
    };
    embedded::tools::CommandLine tool("krvsim", "");
    embedded::tools::AddCommands(tool);
    return embedded::tools::FillToolScript(argc, argv, tool, kinds);
}
