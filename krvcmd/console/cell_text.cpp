#include "krvcmd/console/cell_text.h"

#include <cstring>

namespace Ostrel::UI::Console {

CellText::CellText(std::string_view text) {
    Assign(text);
}

void CellText::Assign(std::string_view text) {
    // The new text is complete before the old one goes: it may be a part of it.
    std::array<char, kInlineCapacity + 1> bytes{};
    if (text.size() <= kInlineCapacity) {
        text.copy(bytes.data(), kInlineCapacity);
        bytes[kInlineCapacity] = static_cast<char>(text.size());
    } else {
        const HeapText heapText{new char[text.size()], static_cast<std::uint32_t>(text.size())};
        text.copy(heapText.data, text.size());
        std::memcpy(bytes.data(), &heapText, sizeof heapText.data + sizeof heapText.size);
        bytes[kInlineCapacity] = kOnHeap;
    }
    if (IsOnHeap()) FreeHeapText();
    m_bytes = bytes;
}

CellText::HeapText CellText::GetHeapText() const {
    HeapText heapText{};
    std::memcpy(&heapText, m_bytes.data(), sizeof heapText.data + sizeof heapText.size);
    return heapText;
}

void CellText::FreeHeapText() {
    delete[] GetHeapText().data;
}

}  // namespace Ostrel::UI::Console
