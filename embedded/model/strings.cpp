#include "embedded/model/strings.h"

namespace embedded {
namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

}  // namespace

std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

std::string HexDigits(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return {kHexDigits[value >> 4U], kHexDigits[value & 0xFU]};
}

std::optional<char> ByteOfHexDigits(std::string_view digits) {
    if (digits.size() != 2) return std::nullopt;
    const size_t high = kHexDigits.find(digits[0]);
    const size_t low = kHexDigits.find(digits[1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    return static_cast<char>(high << 4U | low);
}

}  // namespace embedded
