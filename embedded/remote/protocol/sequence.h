#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/remote/protocol/cbor_items.h"
#include "embedded/remote/protocol/fields.h"

namespace embedded::remote {

// A sequence of CBOR items (RFC 8742) in a byte string. Each item is a field: an integer or a byte string.
// Unlike an array of values, it takes no memory for each field.

class SequenceWriter {
  public:
    template <typename Integer>
    void Number(Integer value) {
        const bool isNegative = std::cmp_less(value, 0);
        const auto number = static_cast<uint64_t>(value);
        AppendHead(m_bytes,
                   isNegative ? ItemHead{ItemKind::Negative, ~number} : ItemHead{ItemKind::Unsigned, number});
    }
    void Text(std::string_view text);
    template <size_t Size>
    void Text(const char (&field)[Size]) {
        Text(krvcmd::RecordText(field));
    }

    // All of it, as a byte string.
    json Take() && { return json::binary(std::move(m_bytes)); }

  private:
    std::vector<uint8_t> m_bytes;
};

// Throws a ProtocolFailure for a field that is missing, of another type, or that does not fit. The bytes must
// outlive the reader and the texts that it returns.
class SequenceReader {
  public:
    explicit SequenceReader(std::string_view bytes) : m_items(bytes) {}

    bool IsAtEnd() const { return m_items.GetBytesLeft() == 0; }

    template <typename Integer>
    void Number(Integer& value) {
        const ItemHead head = m_items.TakeHead();
        if (head.kind == ItemKind::Unsigned) {
            value = InRange<Integer>(head.number);
        } else {
            value = InRange<Integer>(NegativeOf(head));
        }
    }
    template <typename Integer>
    Integer Number() {
        Integer value{};
        Number(value);
        return value;
    }
    std::string_view Text();
    template <size_t Size>
    void Text(char (&field)[Size]) {
        CopyText(Text(), field);
    }

  private:
    static int64_t NegativeOf(const ItemHead& head);

    ItemReader m_items;
};

}  // namespace embedded::remote
