#pragma once

#include <optional>
#include <string_view>

#include "embedded/layout/layout_reader.h"

namespace embedded {

// The first non-ASCII character outside of strings and comments, or at the start of a line that a backslash
// joins to the one before. The TOML library's behaviour is undefined for these, so they are rejected before
// it reads the text.
std::optional<Problem> FindStrayCharacter(std::string_view text);

}  // namespace embedded
