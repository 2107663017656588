#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace embedded::remote {

// As the three high bits of an item's first byte number them.
enum class ItemKind : uint8_t { Unsigned, Negative, Bytes, Text, Array, Map, Tag, Simple };

// How an item begins. The number is its value, its length, or how many items or pairs it has.
struct ItemHead {
    ItemKind kind = ItemKind::Unsigned;
    uint64_t number = 0;
};

// Takes items of CBOR from bytes that may be anything. A Take throws a ProtocolFailure when they end too
// early.
class ItemReader {
  public:
    explicit ItemReader(std::string_view bytes) : m_rest(bytes) {}

    size_t GetBytesLeft() const { return m_rest.size(); }

    // Refuses a length that is left open, too.
    ItemHead TakeHead();
    // What follows the head of a byte string or a text.
    std::string_view TakeBytes(uint64_t length);

  private:
    uint64_t TakeNumber(size_t size);

    std::string_view m_rest;
};

// In as few bytes as possible.
void AppendHead(std::vector<uint8_t>& bytes, ItemHead head);

}  // namespace embedded::remote
