#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Ostrel::UI::Console {

// Whether `text` has bytes from 0x20 to 0x7E only. Almost every text has; each of its bytes takes one
// position and none needs care, so this is asked first, often, and of eight bytes at a time.
inline bool IsPrintableAscii(std::string_view text) {
    constexpr uint64_t kOnes = 0x0101010101010101;
    const auto arePrintable = [](uint64_t bytes) {
        // The top bit of a byte is set in `bytes` from 0x80 on, in the sum for 0x7F and in the difference for
        // bytes below 0x20. Carries begin at such bytes only.
        return ((bytes | (bytes + kOnes) | (bytes - 0x20 * kOnes)) & (0x80 * kOnes)) == 0;
    };
    uint64_t bytes = 0;
    while (text.size() >= sizeof bytes) {
        std::memcpy(&bytes, text.data(), sizeof bytes);
        if (!arePrintable(bytes)) return false;
        text.remove_prefix(sizeof bytes);
    }
    if (text.empty()) return true;
    bytes = 0x20 * kOnes;
    std::memcpy(&bytes, text.data(), text.size());
    return arePrintable(bytes);
}

// The character at the beginning of a text in UTF-8.
struct Utf8Character {
    char32_t codePoint;  // of a byte that belongs to no well-formed character: the byte's own value
    size_t size;         // in bytes
    bool isWellFormed;
};

// Reads the first character of `text`, which must not be empty. Shortened, over-long and surrogate forms are
// not well-formed.
Utf8Character FirstUtf8Character(std::string_view text);

}  // namespace Ostrel::UI::Console
