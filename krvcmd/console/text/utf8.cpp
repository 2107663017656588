#include "krvcmd/console/text/utf8.h"

#include <array>

namespace Ostrel::UI::Console {
namespace {

// A UTF-8 sequence by its length: the pattern of the first byte, and the smallest code point that needs the
// length.
struct Utf8Form {
    uint8_t mask;
    uint8_t pattern;
    char32_t smallest;
    size_t size;
};

constexpr std::array<Utf8Form, 4> kForms{{
    {0x80, 0x00, 0x0, 1},
    {0xE0, 0xC0, 0x80, 2},
    {0xF0, 0xE0, 0x800, 3},
    {0xF8, 0xF0, 0x10000, 4},
}};

constexpr uint8_t kContinuationMask = 0xC0;
constexpr uint8_t kContinuation = 0x80;
constexpr unsigned kContinuationBits = 6;

bool IsCodePoint(char32_t value) {
    return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

}  // namespace

Utf8Character FirstUtf8Character(std::string_view text) {
    const auto firstByte = static_cast<uint8_t>(text.front());
    const Utf8Character stray{firstByte, 1, false};
    for (const Utf8Form& form : kForms) {
        if ((firstByte & form.mask) != form.pattern) continue;
        if (text.size() < form.size) return stray;
        char32_t codePoint = firstByte & static_cast<uint8_t>(~form.mask);
        for (const char next : text.substr(1, form.size - 1)) {
            const auto byte = static_cast<uint8_t>(next);
            if ((byte & kContinuationMask) != kContinuation) return stray;
            codePoint = (codePoint << kContinuationBits) | (byte & static_cast<uint8_t>(~kContinuationMask));
        }
        if (codePoint < form.smallest || !IsCodePoint(codePoint)) return stray;
        return {codePoint, form.size, true};
    }
    return stray;
}

bool IsControlCharacter(char32_t codePoint) {
    return (codePoint >= 0x01 && codePoint <= 0x1F) || (codePoint >= 0x7F && codePoint <= 0x9F);
}

}  // namespace Ostrel::UI::Console
