#pragma once

namespace embedded::tools {

class CommandLine;

// Defines all commands of krvsim, in the order of the help.
void AddCommands(CommandLine& line);

}  // namespace embedded::tools
