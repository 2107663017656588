#pragma once

#include <string>
#include <vector>

#include "tools/common/streams.h"

namespace embedded::tools {

// Runs krvsim with these words, which begin with the command. Returns the exit status: 0 = done, 1 = failed,
// 2 = the command line is invalid.
int RunTool(const std::vector<std::string>& words, const Streams& streams);

}  // namespace embedded::tools
