#include "embedded/remote/protocol/cbor.h"

#include <array>
#include <cstdint>
#include <vector>

namespace embedded::remote {
namespace {

// Walks over the items without building anything, so that whatever is too deep or longer than the message is
// refused before memory is spent on it.
class Inspector {
  public:
    explicit Inspector(std::string_view bytes) : m_rest(bytes) {}

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
        if (!m_rest.empty()) throw ProtocolFailure("a message has more than one value");
    }

  private:
    uint64_t TakeNumber(size_t size) {
        if (m_rest.size() < size) throw ProtocolFailure("a message is cut off");
        uint64_t number = 0;
        for (size_t i = 0; i < size; ++i)
            number = number << 8U | static_cast<uint8_t>(m_rest[i]);
        m_rest.remove_prefix(size);
        return number;
    }

    // The number in the low bits of an item's first byte, or behind it.
    uint64_t TakeArgument(unsigned low) {
        constexpr unsigned kOneByte = 24;
        constexpr unsigned kEightBytes = 27;
        if (low < kOneByte) return low;
        if (low > kEightBytes) throw ProtocolFailure("a length is left open");
        return TakeNumber(size_t{1} << (low - kOneByte));
    }

    void Open(uint64_t items) {
        // Every item takes at least a byte.
        if (items > m_rest.size()) throw ProtocolFailure("a message is cut off");
        if (m_open.size() > kDeepest) throw ProtocolFailure("a message is nested too deeply");
        m_open.push_back(items);
    }

    void InspectItem() {
        enum Major : uint8_t { Unsigned, Negative, Bytes, Text, Array, Map, Tag, Simple };
        const auto first = static_cast<unsigned>(TakeNumber(1));
        const auto major = static_cast<Major>(first >> 5U);
        const uint64_t argument = TakeArgument(first & 0x1FU);
        switch (major) {
            case Unsigned:
            case Negative:
            case Simple:
                return;
            case Bytes:
            case Text:
                if (argument > m_rest.size()) throw ProtocolFailure("a message is cut off");
                m_rest.remove_prefix(argument);
                return;
            case Array:
                return Open(argument);
            case Map:
                if (argument > m_rest.size()) throw ProtocolFailure("a message is cut off");
                return Open(2 * argument);
            case Tag:
                throw ProtocolFailure("a message has a tag");
        }
    }

    std::string_view m_rest;
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
