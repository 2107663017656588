#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/table/cell_text.h"
#include "krvcmd/console/text/display_width.h"
#include "krvcmd/console/text/natural_order.h"
#include "krvcmd/console/text/numbers.h"

namespace Ostrel::UI::Console {

enum class Alignment : uint8_t { Left = 0, Centre = 1, Right = 2 };

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
    virtual size_t RenderInto(std::string& out, uint32_t width) const = 0;

    // The number that other cells are compared with; 0 for texts.
    virtual int64_t GetValue() const { return 0; }

    // Exactly -1, 0 or +1: this cell comes before, with or after `other`.
    virtual int32_t Compare(const CTableItem& other) const = 0;

    // What Compare compares: for two cells of one column Compare gives what comparing these gives. Refers to
    // the cell's text. Ordering many rows takes it out of every cell once.
    virtual NumberedText GetOrderValue() const = 0;

    // The result of RenderInto by itself.
    std::string Render(uint32_t width) const;

    uint32_t GetColumnId() const { return m_columnId; }

    // The text that the cell shows at full width, the same as Render(0).
    std::string_view GetText() const { return m_text.View(); }

    // The positions of a line that the full text takes.
    size_t GetTextLength() const { return m_isPlain ? GetText().size() : DisplayLength(GetText()); }

    // Whether the text is printable ASCII, so that nothing in it needs care when it is shown.
    bool IsPlain() const { return m_isPlain; }

    void SetAlignment(Alignment alignment) { m_alignment = alignment; }

    // Whether the cell holds memory that only its destructor gives back.
    bool HoldsMemory() const { return m_text.IsOnHeap(); }

    // Whether a text cell compares a number at its end by value.
    void SetNaturalCompare(bool natural) { m_naturalCompare = natural; }

  protected:
    CTableItem(uint32_t columnId, Alignment alignment) : m_columnId(columnId), m_alignment(alignment) {}

    // Whether the text needs no shortening in a field of `width` positions.
    bool Fits(uint32_t width) const { return width == 0 || GetTextLength() <= width; }
    // Appends a text that fits: as it is for width 0, otherwise aligned and filled with blanks. Gives the
    // positions.
    size_t RenderFitting(std::string& out, uint32_t width) const;

    bool IsNaturalCompare() const { return m_naturalCompare; }
    void AssignText(std::string_view text) {
        m_text.Assign(text);
        m_isPlain = IsPrintableAscii(text);
    }
    void AssignNumber(std::string_view digits) { m_text.Assign(digits); }

  private:
    // From the largest to the smallest, which leaves derived classes room for small fields of their own.
    CellText m_text;
    uint32_t m_columnId;
    Alignment m_alignment;
    bool m_naturalCompare = true;
    bool m_isPlain = true;
};

// How a number cell writes its value.
enum class NumberStyle : uint8_t { Plain, WithUnit };

// A number, aligned to the right.
class CTableIntItem : public CTableItem {
  public:
    CTableIntItem(uint32_t columnId, int64_t value, NumberStyle style);

    // A number that does not fit is shown as "..." (not filled up), or as full stops in a field of one or
    // two.
    size_t RenderInto(std::string& out, uint32_t width) const override;
    int64_t GetValue() const override { return m_value; }
    int32_t Compare(const CTableItem& other) const override;
    NumberedText GetOrderValue() const override { return {{}, m_value}; }

    // Rewrites the text from the value; `precision` concerns values with a unit only.
    virtual void FormatValue(CapacityPrecision precision);

    void SetValue(int64_t value);

  protected:
    // For classes with a text of their own; they call SetValue once they are constructed.
    explicit CTableIntItem(uint32_t columnId) : CTableItem(columnId, Alignment::Right) {}

  private:
    NumberStyle m_style = NumberStyle::Plain;
    int64_t m_value = 0;
};

// The number of a magazine, drive or slot: constructed from the library's zero-based number, holds and
// shows the one-based number that users know.
class CTableOneBasedIntItem final : public CTableIntItem {
  public:
    CTableOneBasedIntItem(uint32_t columnId, int32_t zeroBasedNumber);

    void FormatValue(CapacityPrecision precision) override;
};

// The column of percent cells. Layout gives a line one more position for each cell of this column.
inline constexpr uint32_t kPercentColumnId = 12;

// The used share of a capacity in whole per cent. Its text ends in "%%", which the console shows as one
// character; therefore it is rendered one position wider than the column.
class CTablePercentIntItem final : public CTableIntItem {
  public:
    // `free` and `total` in bytes; a total below 1 counts as 0 per cent used.
    CTablePercentIntItem(uint32_t columnId, int64_t free, int64_t total);

    size_t RenderInto(std::string& out, uint32_t width) const override;
    void FormatValue(CapacityPrecision precision) override;
};

// A text, aligned to the left. Numbers at the end of texts compare by value: Disc-9 before Disc-10.
class CTableStringItem : public CTableItem {
  public:
    CTableStringItem(uint32_t columnId, std::string_view text);

    // A text that does not fit loses its beginning; "..." stands for it when there is room for more.
    size_t RenderInto(std::string& out, uint32_t width) const override;
    int32_t Compare(const CTableItem& other) const override;
    NumberedText GetOrderValue() const override { return OrderValueOf(GetText()); }

    void SetText(std::string_view text) { AssignText(text); }

  private:
    NumberedText OrderValueOf(std::string_view text) const;
};

// A directory path with backslashes.
class CTableDirItem final : public CTableStringItem {
  public:
    using CTableStringItem::CTableStringItem;

    size_t RenderInto(std::string& out, uint32_t width) const override;
};

}  // namespace Ostrel::UI::Console
