#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Ostrel::UI::Console {

// Whether `test` holds for every byte of `text`. It gets eight bytes at a time, the first group of fewer
// bytes filled up with blanks.
template <typename Test>
bool HoldsForAllBytes(std::string_view text, Test test) {
    uint64_t bytes = 0;
    while (text.size() >= sizeof bytes) {
        std::memcpy(&bytes, text.data(), sizeof bytes);
        if (!test(bytes)) return false;
        text.remove_prefix(sizeof bytes);
    }
    if (text.empty()) return true;
    std::memset(&bytes, ' ', sizeof bytes);
    std::memcpy(&bytes, text.data(), text.size());
    return test(bytes);
}

inline constexpr uint64_t kOneInEachByte = 0x0101010101010101;
inline constexpr uint64_t kTopBits = 0x80 * kOneInEachByte;

// Whether `text` has only bytes from 0x20 to 0x7E. True of almost every text: each byte takes one position,
// and none needs replacing.
inline bool IsPrintableAscii(std::string_view text) {
    return HoldsForAllBytes(text, [](uint64_t bytes) {
        // A byte's top bit is set in `bytes` from 0x80 on, in the sum for 0x7F, and in the difference below
        // 0x20. Only such bytes cause a carry.
        return ((bytes | (bytes + kOneInEachByte) | (bytes - 0x20 * kOneInEachByte)) & kTopBits) == 0;
    });
}

// Whether `text` has only bytes from 0x01 to 0x7F: each takes one position in every locale.
inline bool IsAscii(std::string_view text) {
    return HoldsForAllBytes(
        text, [](uint64_t bytes) { return ((bytes | (bytes - kOneInEachByte)) & kTopBits) == 0; });
}

// The first character of a UTF-8 text.
struct Utf8Character {
    char32_t codePoint;  // the byte's own value when the byte belongs to no well-formed character
    size_t size;         // in bytes
    bool isWellFormed;
};

// Decodes the first character of `text`, which must not be empty. Truncated, overlong and surrogate sequences
// are not well-formed: their first byte is returned by itself.
Utf8Character FirstUtf8Character(std::string_view text);

// Whether it is a control character that a terminal acts on: U+0001 to U+001F, U+007F to U+009F.
bool IsControlCharacter(char32_t codePoint);

}  // namespace Ostrel::UI::Console
