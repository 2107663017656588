#include "tools/krvsim/tool.h"

#include "tools/common/command_line.h"
#include "tools/journal/journal.h"
#include "tools/krvsim/commands.h"

namespace embedded::tools {
namespace {

constexpr void (*kCommands[])(CommandLine&) = {
    AddInit,  AddDump,    AddGenerate, AddClone, AddLoad,   AddFault,   AddJournal,  AddRealTime,
    AddCheck, AddServers, AddRun,      AddDiff,  AddExpect, AddLibrary, AddSnapshot,
};

}  // namespace

void AddCommands(CommandLine& line) {
    for (const auto add : kCommands)
        add(line);
}

int RunTool(const std::vector<std::string>& words, const Streams& streams) {
    CommandLine line("krvsim", "Manages the farms of the simulated service.");
    AddCommands(line);
    return line.Run(words, streams);
}

}  // namespace embedded::tools
