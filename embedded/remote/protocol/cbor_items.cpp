#include "embedded/remote/protocol/cbor_items.h"

#include <bit>

#include "embedded/remote/protocol/cbor.h"

namespace embedded::remote {
namespace {

// The low bits of the first byte are the number itself, or say that it follows in 1, 2, 4 or 8 bytes.
constexpr unsigned kLowBits = 5;
constexpr unsigned kOneByte = 24;
constexpr unsigned kEightBytes = 27;

}  // namespace

ItemHead ItemReader::TakeHead() {
    const auto first = static_cast<unsigned>(TakeNumber(1));
    const auto kind = static_cast<ItemKind>(first >> kLowBits);
    const unsigned low = first & ((1U << kLowBits) - 1);
    if (low < kOneByte) return {kind, low};
    if (low > kEightBytes) throw ProtocolFailure("a length is left open");
    return {kind, TakeNumber(size_t{1} << (low - kOneByte))};
}

std::string_view ItemReader::TakeBytes(uint64_t length) {
    if (length > m_rest.size()) throw ProtocolFailure("a message is cut off");
    const std::string_view bytes = m_rest.substr(0, length);
    m_rest.remove_prefix(length);
    return bytes;
}

uint64_t ItemReader::TakeNumber(size_t size) {
    uint64_t number = 0;
    for (const char byte : TakeBytes(size))
        number = number << 8U | static_cast<uint8_t>(byte);
    return number;
}

void AppendHead(std::vector<uint8_t>& bytes, ItemHead head) {
    const auto kind = static_cast<unsigned>(head.kind) << kLowBits;
    if (head.number < kOneByte) {
        bytes.push_back(static_cast<uint8_t>(kind | head.number));
        return;
    }
    const auto lastByte = static_cast<unsigned>(std::bit_width(head.number) - 1) / 8;
    const auto low = static_cast<unsigned>(std::bit_width(lastByte));
    bytes.push_back(static_cast<uint8_t>(kind | (kOneByte + low)));
    for (unsigned shift = 8U << low; shift > 0;) {
        shift -= 8;
        bytes.push_back(static_cast<uint8_t>(head.number >> shift));
    }
}

}  // namespace embedded::remote
