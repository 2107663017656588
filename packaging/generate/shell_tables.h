#pragma once

#include <string>
#include <string_view>

namespace krvcmd {

// Tables for the completion scripts: one quoted text per line, its fields divided by "|".
//
//   grammar  level|keyword|command or nothing|dash or nothing|value|excluded|excluded by a list|help
//            where "excluded" are keywords divided by blanks
//   columns  letter|description
//   topics   keyword of a command that has a help text of its own
//
// `shell` is bash, zsh, fish or powershell, `table` one of the above.
std::string ShellTable(std::string_view shell, std::string_view table);

}  // namespace krvcmd
