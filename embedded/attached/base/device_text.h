#pragma once

#include <string>
#include <string_view>

namespace embedded::attached {

// What a device says of itself, fit for a terminal: every byte outside of printable ASCII becomes "?".
std::string Printable(std::string_view text);

// `value` with `digits` upper-case hexadecimal digits and "h" behind: "3Fh".
std::string HexText(unsigned value, int digits);

}  // namespace embedded::attached
