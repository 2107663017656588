#pragma once

#include <cstddef>
#include <string_view>

namespace Ostrel::UI::Console {

// The character at the beginning of a text in UTF-8.
struct Utf8Character {
    char32_t codePoint;  // of a byte that belongs to no well-formed character: the byte's own value
    std::size_t size;    // in bytes
    bool isWellFormed;
};

// Reads the first character of `text`, which must not be empty. Shortened, over-long and surrogate forms are
// not well-formed.
Utf8Character FirstUtf8Character(std::string_view text);

}  // namespace Ostrel::UI::Console
