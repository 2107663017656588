#include "krvcmd/console/table/cell_text.h"

#include <cstring>
#include <string>

namespace Ostrel::UI::Console {

CellText::CellText(std::string_view text) {
    Assign(text);
}

void CellText::Assign(std::string_view text) {
    // Freed last: the new text may be a part of it.
    const char* const oldHeapText = IsOnHeap() ? GetHeapText().data : nullptr;
    if (text.size() <= kInlineCapacity) {
        std::char_traits<char>::move(m_bytes.data(), text.data(), text.size());
        m_bytes[kInlineCapacity] = static_cast<char>(text.size());
    } else {
        const HeapText heapText{new char[text.size()], static_cast<uint32_t>(text.size())};
        text.copy(heapText.data, text.size());
        std::memcpy(m_bytes.data(), &heapText, sizeof heapText.data + sizeof heapText.size);
        m_bytes[kInlineCapacity] = kOnHeap;
    }
    delete[] oldHeapText;
}

CellText::HeapText CellText::GetHeapText() const {
    HeapText heapText{};
    std::memcpy(&heapText, m_bytes.data(), sizeof heapText.data + sizeof heapText.size);
    return heapText;
}

}  // namespace Ostrel::UI::Console
