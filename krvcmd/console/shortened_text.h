#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

inline constexpr std::string_view kEllipsis = "...";

// Append `text`, which is longer than `width`, cut down to `width` (1 or more) positions: its end or its
// beginning. What is left of it begins with "..." instead of its own first characters when `width` is more
// than 3. Both give the positions taken, which are `width`.
std::size_t AppendEnd(std::string& out, std::string_view text, std::size_t width);
std::size_t AppendBeginning(std::string& out, std::string_view text, std::size_t width);

}  // namespace Ostrel::UI::Console
