#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace e2e {

// Splits a command line as a shell does: blanks separate words, single and double quotes group, a backslash
// outside single quotes escapes the next character. Throws std::runtime_error for an open quote.
std::vector<std::string> SplitShellWords(std::string_view line);

}  // namespace e2e
