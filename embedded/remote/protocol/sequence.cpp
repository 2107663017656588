#include "embedded/remote/protocol/sequence.h"

namespace embedded::remote {

void SequenceWriter::Text(std::string_view text) {
    AppendHead(m_bytes, {ItemKind::Bytes, text.size()});
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
}

std::string_view SequenceReader::Text() {
    const ItemHead head = m_items.TakeHead();
    if (head.kind != ItemKind::Bytes) throw ProtocolFailure("a text is missing");
    return m_items.TakeBytes(head.number);
}

// The item is -1 minus its number.
int64_t SequenceReader::NegativeOf(const ItemHead& head) {
    if (head.kind != ItemKind::Negative) throw ProtocolFailure("a number is missing");
    return -1 - InRange<int64_t>(head.number);
}

}  // namespace embedded::remote
