#pragma once

#include "tools/common/command_line.h"

namespace embedded::tools {

// Each defines one command of krvsim, or a group of them, in the file of the same name.
void AddInit(CommandLine& line);
void AddDump(CommandLine& line);
void AddGenerate(CommandLine& line);
void AddClone(CommandLine& line);
void AddLoad(CommandLine& line);  // load and unload
void AddFault(CommandLine& line);
void AddJournal(CommandLine& line);
void AddCheck(CommandLine& line);
void AddServers(CommandLine& line);

}  // namespace embedded::tools
