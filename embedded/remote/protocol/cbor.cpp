#include "embedded/remote/protocol/cbor.h"

#include <cstdint>
#include <vector>

#include "embedded/remote/protocol/cbor_items.h"

namespace embedded::remote {
namespace {

// Walks over the items without building anything, so that whatever is too deep or longer than the message is
// refused before memory is spent on it.
class Inspector {
  public:
    explicit Inspector(std::string_view bytes) : m_items(bytes) {}

    void Inspect() {
        m_open.push_back(1);
        while (!m_open.empty()) {
            if (m_open.back() == 0) {
                m_open.pop_back();
                continue;
            }
            --m_open.back();
            InspectItem();
        }
        if (m_items.GetBytesLeft() > 0) throw ProtocolFailure("a message has more than one value");
    }

  private:
    // An array with one item each, or a map with two.
    void Open(uint64_t count, uint64_t each) {
        // Every item takes at least a byte.
        if (count > m_items.GetBytesLeft() / each) throw ProtocolFailure("a message is cut off");
        if (m_open.size() > kMaxDepth) throw ProtocolFailure("a message is nested too deeply");
        m_open.push_back(count * each);
    }

    void InspectItem() {
        const ItemHead head = m_items.TakeHead();
        switch (head.kind) {
            case ItemKind::Unsigned:
            case ItemKind::Negative:
            case ItemKind::Simple:
                return;
            case ItemKind::Bytes:
            case ItemKind::Text:
                (void)m_items.TakeBytes(head.number);
                return;
            case ItemKind::Array:
                return Open(head.number, 1);
            case ItemKind::Map:
                return Open(head.number, 2);
            case ItemKind::Tag:
                throw ProtocolFailure("a message has a tag");
        }
    }

    ItemReader m_items;
    std::vector<uint64_t> m_open;  // for each array or map that is open, the items that it still has
};

}  // namespace

std::string EncodeCbor(const json& value) {
    std::string bytes;
    json::to_cbor(value, bytes);
    return bytes;
}

json DecodeCbor(std::string_view bytes) {
    Inspector(bytes).Inspect();
    json value = json::from_cbor(bytes, true, false);
    if (value.is_discarded()) throw ProtocolFailure("a message is not CBOR");
    return value;
}

json BytesOf(std::string_view text) {
    return json::binary({text.begin(), text.end()});
}

std::string_view TextOf(const json& value) {
    if (!value.is_binary()) throw ProtocolFailure("a text is missing");
    const auto& bytes = value.get_binary();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace embedded::remote
