#pragma once

#include <string>
#include <vector>

namespace embedded::tools {

// What completion knows of krvsim, one line for each word that a command takes, with fields between "|":
//
//   command|word|many|values|help
//
// The command is empty for krvsim's commands themselves, and "fault add" for a command within a group. The
// word is a command, an option, or the name of another word between angle brackets. "many" stands for an
// option that may be repeated. Values are words to choose from and kinds: <file>, <server>, <snapshot>,
// <command> and <text>.
std::vector<std::string> KrvsimRows();

}  // namespace embedded::tools
