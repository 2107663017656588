#include "tools/krvadm/tool.h"

#include "tools/common/command_line.h"
#include "tools/journal/journal.h"

namespace embedded::tools {

void AddAdministration(CommandLine& line) {
    AddDiscover(line);
    AddAttach(line);
    AddStatus(line);
    AddLimits(line);
    AddInventory(line);
    AddCheck(line);
    AddJournal(line);
    AddLibrary(line);
    AddServe(line);
    AddServers(line);
}

int RunAdministration(const std::vector<std::string>& words, const Streams& streams) {
    CommandLine line("krvadm", "Manages real changers and their drives, and servers on other machines.");
    AddAdministration(line);
    return line.Run(words, streams);
}

}  // namespace embedded::tools
