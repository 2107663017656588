#include "embedded/attached/base/big_endian.h"

#include <algorithm>
#include <string_view>

namespace embedded::attached {

bool BigEndianReader::Has(size_t at, size_t length) {
    const bool has = at <= m_bytes.size() && length <= m_bytes.size() - at;
    m_isComplete = m_isComplete && has;
    return has;
}

uint64_t BigEndianReader::GetNumber(size_t at, size_t length) {
    if (!Has(at, length)) return 0;
    uint64_t number = 0;
    for (const uint8_t byte : m_bytes.subspan(at, length))
        number = number << 8 | byte;
    return number;
}

uint8_t BigEndianReader::GetBits(size_t at, unsigned highest, unsigned lowest) {
    const unsigned mask = (1U << (highest - lowest + 1)) - 1;
    return static_cast<uint8_t>((unsigned{Get8(at)} >> lowest) & mask);
}

Bytes BigEndianReader::GetBytes(size_t at, size_t length) {
    if (Has(at, length)) return m_bytes.subspan(at, length);
    return at < m_bytes.size() ? m_bytes.subspan(at) : Bytes();
}

std::string BigEndianReader::GetText(size_t at, size_t length) {
    const Bytes bytes = GetBytes(at, length);
    const std::string text(bytes.begin(), bytes.end());
    constexpr std::string_view kPadding(" \0", 2);
    const size_t first = text.find_first_not_of(kPadding);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kPadding) + 1 - first);
}

void BigEndianWriter::PutNumber(size_t at, size_t length, uint64_t value) {
    if (at > m_bytes.size() || length > m_bytes.size() - at) {
        m_isComplete = false;
        return;
    }
    for (size_t i = length; i > 0; --i) {
        m_bytes[at + i - 1] = static_cast<uint8_t>(value);
        value >>= 8;
    }
}

}  // namespace embedded::attached
