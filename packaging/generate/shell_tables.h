#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace krvcmd {

// A table for a completion script: one quoted text per line, with its fields separated by "|".
//
//   grammar  level|keyword|command or nothing|dash or nothing|value|excluded|excluded by a list|help
//            where the excluded keywords are separated by blanks
//   columns  letter|objects of a query that have such a value|description
//   topics   keyword of a command with a help text
//
// `shell` is bash, zsh, fish or powershell, `table` one of the above.
std::string ShellTable(std::string_view shell, std::string_view table);

// The texts quoted, one a line.
std::string ShellTexts(std::string_view shell, const std::vector<std::string>& texts);

}  // namespace krvcmd
