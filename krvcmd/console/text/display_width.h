#pragma once

#include <cstddef>
#include <string_view>

#include "krvcmd/console/text/text_line.h"
#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {

// All layout (padding, cutting, centring, wrapping, underlines) counts positions of a line. In a UTF-8 locale
// a character takes the positions that a terminal uses for it: 0, 1 or 2; each byte of a control character
// and each byte that belongs to no character takes one. In any other locale every byte takes one.

// The positions that `text` takes. DisplayLength answers at once for ASCII, without reading the
// locale.
size_t CountPositions(std::string_view text);
inline size_t DisplayLength(std::string_view text) {
    return IsAscii(text) ? text.size() : CountPositions(text);
}

// The longest beginning of `text` that takes at most `length` positions. Never ends inside a character.
std::string_view LeadingPart(std::string_view text, size_t length);

// The longest end of `text` that takes at most `length` positions. Never begins inside a character.
std::string_view TrailingPart(std::string_view text, size_t length);

inline constexpr std::string_view kEllipsis = "...";

// Append the end or the beginning of `text`, which is longer than `width` positions, in exactly `width` (1 or
// more) positions. When `width` is above 3, "..." stands in place of the first three positions of that part.
// Both return `width`.
size_t AppendElidedEnd(TextLine& out, std::string_view text, size_t width);
size_t AppendElidedBeginning(TextLine& out, std::string_view text, size_t width);

}  // namespace Ostrel::UI::Console
