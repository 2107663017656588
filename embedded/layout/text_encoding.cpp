#include "embedded/layout/text_encoding.h"

#include <charconv>

#include "embedded/model/strings.h"

namespace embedded {
namespace {

// How many bytes follow the first one of a UTF-8 sequence; -1 for a byte that cannot be the first.
int ContinuationCount(unsigned char byte) {
    if (byte < 0x80) return 0;
    if (byte >= 0xC2 && byte <= 0xDF) return 1;
    if (byte >= 0xE0 && byte <= 0xEF) return 2;
    if (byte >= 0xF0 && byte <= 0xF4) return 3;
    return -1;
}

// The second byte tells overlong forms, surrogates and code points beyond Unicode.
bool IsSecondByte(unsigned char first, unsigned char second) {
    switch (first) {
        case 0xE0:
            return second >= 0xA0 && second <= 0xBF;
        case 0xED:
            return second >= 0x80 && second <= 0x9F;
        case 0xF0:
            return second >= 0x90 && second <= 0xBF;
        case 0xF4:
            return second >= 0x80 && second <= 0x8F;
        default:
            return second >= 0x80 && second <= 0xBF;
    }
}

}  // namespace

bool IsText(std::string_view bytes) {
    for (size_t position = 0; position < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[position]);
        const int count = ContinuationCount(first);
        if (first == 0 || count < 0 || position + static_cast<size_t>(count) >= bytes.size()) return false;
        for (int index = 1; index <= count; ++index) {
            const auto byte = static_cast<unsigned char>(bytes[position + static_cast<size_t>(index)]);
            const bool isValid = index == 1 ? IsSecondByte(first, byte) : byte >= 0x80 && byte <= 0xBF;
            if (!isValid) return false;
        }
        position += 1 + static_cast<size_t>(count);
    }
    return true;
}

std::string PrintableText(std::string_view bytes) {
    if (!IsText(bytes)) return "0x" + ToHex(bytes);
    std::string printable;
    for (const char character : bytes) {
        printable += static_cast<unsigned char>(character) < 0x20 || character == 0x7F ? '?' : character;
    }
    return printable;
}

std::string ToHex(std::string_view bytes) {
    std::string digits;
    for (const char byte : bytes)
        digits += HexDigits(byte);
    return digits;
}

std::optional<std::string> FromHex(std::string_view digits) {
    if (digits.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (size_t position = 0; position < digits.size(); position += 2) {
        unsigned value = 0;
        const char* const end = digits.data() + position + 2;
        const auto result = std::from_chars(digits.data() + position, end, value, 16);
        if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
        bytes += static_cast<char>(value);
    }
    return bytes;
}

}  // namespace embedded
