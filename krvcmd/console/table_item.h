#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/cell_text.h"
#include "krvcmd/console/display_text.h"
#include "krvcmd/console/numbered_text.h"

namespace Ostrel::UI::Console {

enum class Alignment : std::uint8_t { Left = 0, Centre = 1, Right = 2 };

// One cell of a table. It knows its column by a numeric id, shows itself in a field of a given width
// and compares itself with another cell of the same column. All cells of a column are of one class.
class CTableItem {
  public:
    virtual ~CTableItem() = default;
    CTableItem(const CTableItem&) = delete;
    CTableItem& operator=(const CTableItem&) = delete;

    // Appends the cell, shown in a field of `width` positions, to `out` and gives the positions taken. Width
    // 0 is the full text as it is; otherwise a shorter text is aligned and filled to `width`, and what
    // happens to a longer one is each class's own rule (its result need not be `width` long).
    virtual std::size_t RenderInto(std::string& out, std::uint32_t width) const = 0;

    // The number that other cells are compared with; 0 for texts.
    virtual std::int64_t GetValue() const { return 0; }

    // Exactly -1, 0 or +1: this cell comes before, with or after `other`.
    virtual std::int32_t Compare(const CTableItem& other) const = 0;

    // What Compare compares: for two cells of one column Compare gives what comparing these gives. Refers to
    // the cell's text. Ordering many rows takes it out of every cell once.
    virtual NumberedText GetOrderValue() const = 0;

    // The result of RenderInto by itself.
    std::string Render(std::uint32_t width) const;

    std::uint32_t GetColumnId() const { return m_columnId; }

    // The text that the cell shows at full width, the same as Render(0).
    std::string_view GetText() const { return m_text.View(); }

    // The positions of a line that the full text takes.
    std::size_t GetTextLength() const { return m_isPlain ? GetText().size() : DisplayLength(GetText()); }

    // Whether the text is printable ASCII, so that nothing in it needs care when it is shown.
    bool IsPlain() const { return m_isPlain; }

    void SetAlignment(Alignment alignment) { m_alignment = alignment; }

    // Whether the cell holds memory that only its destructor gives back.
    bool HoldsMemory() const { return m_text.IsOnHeap(); }

    // Whether a text cell compares a number at its end by value.
    void SetNaturalCompare(bool natural) { m_naturalCompare = natural; }

  protected:
    CTableItem(std::uint32_t columnId, Alignment alignment) : m_columnId(columnId), m_alignment(alignment) {}

    // Whether the text needs no shortening in a field of `width` positions.
    bool Fits(std::uint32_t width) const { return width == 0 || GetTextLength() <= width; }
    // Appends a text that fits: as it is for width 0, otherwise aligned and filled with blanks. Gives the
    // positions.
    std::size_t RenderFitting(std::string& out, std::uint32_t width) const;

    bool IsNaturalCompare() const { return m_naturalCompare; }
    void AssignText(std::string_view text) {
        m_text.Assign(text);
        m_isPlain = IsPrintableAscii(text);
    }
    void AssignNumber(std::string_view digits) { m_text.Assign(digits); }

  private:
    // From the largest to the smallest, which leaves derived classes room for small fields of their own.
    CellText m_text;
    std::uint32_t m_columnId;
    Alignment m_alignment;
    bool m_naturalCompare = true;
    bool m_isPlain = true;
};

}  // namespace Ostrel::UI::Console
