#include "embedded/layout/layout_writer.h"

namespace embedded {
namespace {

// The bytes that follow the first one of a UTF-8 sequence; -1 for a byte that begins none.
int FollowersOf(unsigned char byte) {
    if (byte < 0x80) return 0;
    if (byte >= 0xC2 && byte <= 0xDF) return 1;
    if (byte >= 0xE0 && byte <= 0xEF) return 2;
    if (byte >= 0xF0 && byte <= 0xF4) return 3;
    return -1;
}

// Overlong forms, surrogates and what lies beyond Unicode are told by the second byte.
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
        const int followers = FollowersOf(first);
        if (first == 0 || followers < 0 || position + static_cast<size_t>(followers) >= bytes.size())
            return false;
        for (int follower = 1; follower <= followers; ++follower) {
            const auto byte = static_cast<unsigned char>(bytes[position + static_cast<size_t>(follower)]);
            const bool isRight = follower == 1 ? IsSecondByte(first, byte) : byte >= 0x80 && byte <= 0xBF;
            if (!isRight) return false;
        }
        position += 1 + static_cast<size_t>(followers);
    }
    return true;
}

std::string ToHex(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        hex += kDigits[byte >> 4U];
        hex += kDigits[byte & 0xFU];
    }
    return hex;
}

}  // namespace embedded
