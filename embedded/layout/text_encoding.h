#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embedded {

// Whether the bytes are valid UTF-8 without a NUL: what a layout file and JSON can hold as a string. Other
// bytes are written in hexadecimal, as { hex = "4bf6" }.
bool IsText(std::string_view bytes);

// Harmless on a terminal and in a file: without control characters; bytes that are not UTF-8 in hexadecimal.
std::string PrintableText(std::string_view bytes);

// Two lower-case hexadecimal digits for each byte.
std::string ToHex(std::string_view bytes);

// The bytes that the digits stand for; nothing for an odd number of digits or for another character.
std::optional<std::string> FromHex(std::string_view digits);

}  // namespace embedded
