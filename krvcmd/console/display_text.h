#pragma once

#include <cstddef>
#include <string_view>

#include "krvcmd/console/printable_ascii.h"

namespace Ostrel::UI::Console {

// How many positions of a line a text takes. All layout counts in these: padding, cutting, centring,
// wrapping, the length of underlines. In a UTF-8 locale a character takes the columns that a terminal uses
// for it, and a byte that belongs to no character, or to a control character, takes one; otherwise every byte
// takes one position.
std::size_t DisplayLengthOfAny(std::string_view text);
inline std::size_t DisplayLength(std::string_view text) {
    return IsPrintableAscii(text) ? text.size() : DisplayLengthOfAny(text);
}

// The longest beginning of `text` that takes at most `length` positions. Never ends inside a character.
std::string_view LeadingPart(std::string_view text, std::size_t length);

// The longest end of `text` that takes at most `length` positions. Never begins inside a character.
std::string_view TrailingPart(std::string_view text, std::size_t length);

}  // namespace Ostrel::UI::Console
