#include "krvcmd/console/cell_text.h"

#include <cstring>

namespace Ostrel::UI::Console {

CellText::CellText(std::string_view text) {
    Assign(text);
}

void CellText::Assign(std::string_view text) {
    if (text.size() <= kInlineCapacity) {
        Release();
        text.copy(m_bytes.data(), kInlineCapacity);
        m_bytes[kInlineCapacity] = static_cast<char>(text.size());
        return;
    }
    // The new text is complete before the old one goes: it may be a part of it.
    const HeapText heapText{new char[text.size()], static_cast<std::uint32_t>(text.size())};
    text.copy(heapText.data, text.size());
    Release();
    std::memcpy(m_bytes.data(), &heapText, sizeof heapText.data + sizeof heapText.size);
    m_bytes[kInlineCapacity] = kOnHeap;
}

std::string_view CellText::View() const {
    const char length = m_bytes[kInlineCapacity];
    if (length != kOnHeap) return {m_bytes.data(), static_cast<std::size_t>(length)};
    const HeapText heapText = GetHeapText();
    return {heapText.data, heapText.size};
}

CellText::HeapText CellText::GetHeapText() const {
    HeapText heapText{};
    std::memcpy(&heapText, m_bytes.data(), sizeof heapText.data + sizeof heapText.size);
    return heapText;
}

void CellText::Release() {
    if (m_bytes[kInlineCapacity] == kOnHeap) delete[] GetHeapText().data;
    m_bytes[kInlineCapacity] = 0;
}

}  // namespace Ostrel::UI::Console
