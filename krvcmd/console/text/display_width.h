#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {

// How many positions of a line a text takes. All layout counts in these: padding, cutting, centring,
// wrapping, the length of underlines. In a UTF-8 locale a character takes the columns that a terminal uses
// for it, and a byte that belongs to no character, or to a control character, takes one; otherwise every byte
// takes one position.
size_t DisplayLengthOfAny(std::string_view text);
inline size_t DisplayLength(std::string_view text) {
    return IsPrintableAscii(text) ? text.size() : DisplayLengthOfAny(text);
}

// The longest beginning of `text` that takes at most `length` positions. Never ends inside a character.
std::string_view LeadingPart(std::string_view text, size_t length);

// The longest end of `text` that takes at most `length` positions. Never begins inside a character.
std::string_view TrailingPart(std::string_view text, size_t length);

inline constexpr std::string_view kEllipsis = "...";

// Append `text`, which is longer than `width`, cut down to `width` (1 or more) positions: its end or its
// beginning. What is left of it begins with "..." instead of its own first characters when `width` is more
// than 3. Both give the positions taken, which are `width`.
size_t AppendEnd(std::string& out, std::string_view text, size_t width);
size_t AppendBeginning(std::string& out, std::string_view text, size_t width);

}  // namespace Ostrel::UI::Console
