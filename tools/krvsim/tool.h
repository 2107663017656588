#pragma once

#include <string>
#include <vector>

#include "tools/common/streams.h"

namespace embedded::tools {

// Runs krvsim with these words, which begin with the command. Returns the exit status: 0 = done, 1 = failed,
// 2 = the command line is invalid, 3 = done, but the result lacks something; diff, run and expect have their
// own.
int RunTool(const std::vector<std::string>& words, const Streams& streams);

class CommandLine;

// Each defines the command, or the group of commands, of the file with the same name.
void AddInit(CommandLine& line);
void AddDump(CommandLine& line);
void AddGenerate(CommandLine& line);
void AddClone(CommandLine& line);
void AddLoad(CommandLine& line);  // load and unload
void AddFault(CommandLine& line);
void AddRealTime(CommandLine& line);
void AddCheck(CommandLine& line);
void AddRun(CommandLine& line);
void AddExpect(CommandLine& line);
void AddLibrary(CommandLine& line);
void AddDiff(CommandLine& line);
void AddSnapshot(CommandLine& line);  // snapshot, snapshots, restore and remove
void AddServers(CommandLine& line);

}  // namespace embedded::tools
