#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Ostrel::UI::Console {

// The text of one cell, in 24 bytes. A large table has millions of cells, and most of their texts are
// numbers, locations and short names: up to 23 bytes lie in the object itself, longer texts on the heap.
class CellText {
  public:
    CellText() = default;
    explicit CellText(std::string_view text);
    ~CellText() {
        if (IsOnHeap()) delete[] GetHeapText().data;
    }
    CellText(const CellText&) = delete;
    CellText& operator=(const CellText&) = delete;

    // Replaces the text, also by a part of itself. Leaves the old text in place when it throws
    // std::bad_alloc.
    void Assign(std::string_view text);

    bool IsOnHeap() const { return m_bytes[kInlineCapacity] == kOnHeap; }

    std::string_view View() const {
        if (!IsOnHeap()) return {m_bytes.data(), static_cast<size_t>(m_bytes[kInlineCapacity])};
        const HeapText heapText = GetHeapText();
        return {heapText.data, heapText.size};
    }

  private:
    static constexpr size_t kInlineCapacity = 23;
    static constexpr char kOnHeap = -1;

    // What the object's bytes hold when the text lies on the heap.
    struct HeapText {
        char* data;
        uint32_t size;
    };

    HeapText GetHeapText() const;

    // The last byte is the length of an inline text, or kOnHeap.
    alignas(HeapText) std::array<char, kInlineCapacity + 1> m_bytes{};
};

static_assert(sizeof(CellText) == 24);

}  // namespace Ostrel::UI::Console
