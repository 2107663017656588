#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace e2e {

// Splits a command line into words as a shell does: blanks separate, single and double quotes hold
// together, a backslash outside single quotes takes the next character as it is. Throws when a
// quote is not closed.
std::vector<std::string> SplitShellWords(std::string_view line);

}  // namespace e2e
