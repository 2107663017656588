#pragma once

#include <span>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/parameter_list.h"

namespace krvcmd {

// Builds the command object that the parsed line names, hands it the line and runs it. System
// error 22 when the line names no command.
Status ExecuteCommandLine(const ParameterList& line);

// One whole run of the program: parses the arguments (those after the program's path), executes
// the command, reports the result, and gives the exit status.
int RunProgram(std::span<const char* const> arguments);

}  // namespace krvcmd
