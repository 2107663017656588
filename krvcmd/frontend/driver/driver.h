#pragma once

#include <span>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/parameter_list.h"

namespace krvcmd {

// Makes the command that the parsed line names and runs it; its texts go to `writer`. System error 22 when
// the line names no command.
Status ExecuteCommandLine(const ParameterList& line, Ostrel::UI::Console::COutputObject& writer);

// One whole run of the program: parses the arguments (those after the program's path), executes the
// command, reports the result and returns the exit status.
int RunProgram(std::span<const char* const> arguments);

}  // namespace krvcmd
