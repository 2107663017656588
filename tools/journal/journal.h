#pragma once

#include "tools/common/command_line.h"

namespace embedded::tools {

// Defines the command "journal".
void AddJournal(CommandLine& line);

}  // namespace embedded::tools
