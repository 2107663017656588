#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace embedded {

// One text out of several.
std::string Joined(std::initializer_list<std::string_view> parts);

// The two hexadecimal digits of a byte, in small letters, and back; nothing for any other text.
std::string HexDigits(char byte);
std::optional<char> ByteOfHexDigits(std::string_view digits);

}  // namespace embedded
