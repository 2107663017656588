#include "packaging/generate/tool_rows.h"
#include "tools/common/command_line.h"
#include "tools/krvadm/tool.h"

// Fills a template of a completion script of krvadm.
int main(int argc, char** argv) {
    const embedded::tools::ValueKind kinds[] = {
        {"--server", "", "<server>"},
        {"--only", "", "<server>"},
        {"--changer", "", "<file>"},
        {"--drive", "attach", "<file>"},
        {"--credentials", "", "<file>"},
        {"--profile", "", "small large <file>"},
        {"--side", "", "A B"},
        {"<ADDRESS>", "inventory", "<file>"},
        {"<NAME>", "servers remove", "<server>"},
    };
    embedded::tools::CommandLine tool("krvadm", "");
    embedded::tools::AddAdministration(tool);
    return embedded::tools::FillToolScript(argc, argv, tool, kinds);
}
