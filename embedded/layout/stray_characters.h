// Characters outside of ASCII where a layout file cannot have them.
#pragma once

#include <optional>
#include <string_view>

#include "embedded/layout/layout_reader.h"

namespace embedded {

// The first character outside of ASCII that stands neither in a text nor in a comment, or that begins a line
// which a backslash joins to the one before. The TOML library leaves undefined what it does with these, so
// they are refused before it sees them.
std::optional<Problem> FindStrayCharacter(std::string_view text);

}  // namespace embedded
