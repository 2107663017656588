#pragma once

#include <span>
#include <string>
#include <vector>

namespace embedded::tools {

class CommandLine;

// What a word of a command can be completed with.
struct ValueKind {
    std::string word;     // an option, or another word of a command between angle brackets
    std::string command;  // empty = of any
    std::string values;   // words to choose from, and kinds: <file>, <server>, <snapshot>, <command>, <text>
};

// What completion knows of a tool, one line for each word that a command takes, with fields between "|":
//
//   command|word|many|values|help
//
// The command is empty for the tool's commands themselves, and "fault add" for a command within a group. The
// word is a command, an option, or the name of another word between angle brackets. "many" stands for an
// option that may be repeated. The values of words that are in no kind are "<text>".
std::vector<std::string> ToolRows(CommandLine& tool, std::span<const ValueKind> kinds);

// Fills the template of a completion script, whose only mark is "rows SHELL": main of a generator.
int FillToolScript(int argc, char** argv, CommandLine& tool, std::span<const ValueKind> kinds);

}  // namespace embedded::tools
