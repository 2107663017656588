#pragma once

#include <cstddef>
#include <string_view>

namespace Ostrel::UI::Console {

// How many positions of a line a text takes. All layout counts in these: padding, cutting, centring,
// wrapping, the length of underlines.
inline std::size_t DisplayLength(std::string_view text) {
    return text.size();
}

// The longest beginning of `text` that takes at most `length` positions.
inline std::string_view LeadingPart(std::string_view text, std::size_t length) {
    return text.substr(0, length);
}

// The longest end of `text` that takes at most `length` positions.
inline std::string_view TrailingPart(std::string_view text, std::size_t length) {
    return text.size() <= length ? text : text.substr(text.size() - length);
}

}  // namespace Ostrel::UI::Console
