// The command line of krvsim.
#pragma once

#include <string>
#include <vector>

#include "tools/krvsim/commands.h"

namespace embedded::tools {

// Runs the command that the words name, without the program's own name; returns the exit status: 0 =
// done, 1 = refused, 2 = the command line is wrong.
int RunTool(const std::vector<std::string>& words, const Streams& streams);

}  // namespace embedded::tools
