#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/text/natural_order.h"
#include "krvcmd/console/text/numbers.h"
#include "krvcmd/console/text/safe_text.h"
#include "krvcmd/console/text/text_line.h"
#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {

// The text of one cell, in 24 bytes. A large table has millions of cells, and most of their texts are
// locations and short names: up to 23 bytes lie in the object itself, longer texts on the heap.
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

    bool IsOnHeap() const { return m_bytes.back() == kOnHeap; }

    std::string_view View() const {
        if (!IsOnHeap()) return {m_bytes.data(), static_cast<size_t>(m_bytes.back())};
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

enum class Alignment : uint8_t { Left = 0, Centre = 1, Right = 2 };

// One cell of a table. It knows its column by a numeric id, renders itself into a field of a given width and
// compares itself with another cell of the same column. All cells of a column are of one class.
class CTableItem {
  public:
    virtual ~CTableItem() = default;
    CTableItem(const CTableItem&) = delete;
    CTableItem& operator=(const CTableItem&) = delete;

    // Appends the cell in a field of `width` positions to `out` and returns the positions taken. In width 0
    // that is the full text as it is. A text that fits is aligned and padded with blanks to `width`; each
    // class has its own rule for one that does not, and the result may be narrower than `width`.
    virtual size_t Render(TextLine& out, uint32_t width) const = 0;

    // The number that number cells compare; 0 for a text.
    virtual int64_t GetValue() const { return 0; }

    // Exactly -1, 0 or +1: this cell comes before, with or after `other`.
    virtual int32_t Compare(const CTableItem& other) const = 0;

    // What Compare compares, read once from every cell when many rows are sorted: for two cells of one column
    // Compare equals CompareNumberedTexts of their sort values. Refers to the cell's text.
    virtual NumberedText GetSortValue() const = 0;

    // The full text. Render shows it in width 0, with "?" for what must not be shown.
    virtual std::string GetText() const = 0;

    // The positions of a line that the full text takes, as standard output shows it.
    virtual size_t GetTextLength() const = 0;

    uint32_t GetColumnId() const { return m_columnId; }

    // Whether only the destructor frees all of the cell's memory.
    virtual bool OwnsHeapMemory() const { return false; }

    void SetAlignment(Alignment alignment) { m_alignment = alignment; }

    // Whether a text cell compares a number at its end by value.
    void SetNaturalCompare(bool natural) { m_naturalCompare = natural; }

  protected:
    CTableItem(uint32_t columnId, Alignment alignment) : m_columnId(columnId), m_alignment(alignment) {}

    // Whether a text of `length` positions needs no shortening in a field of `width`.
    static bool Fits(size_t length, uint32_t width) { return width == 0 || length <= width; }
    // Render for a text of `length` positions that fits.
    size_t RenderFitting(TextLine& out, std::string_view text, size_t length, uint32_t width) const;

    bool IsNaturalCompare() const { return m_naturalCompare; }

  private:
    // The bytes left over behind them serve derived classes.
    uint32_t m_columnId;
    Alignment m_alignment;
    bool m_naturalCompare = true;
};

// A number, aligned to the right; it becomes a text when it is shown. One that does not fit is shown as
// "...", not padded, or as full stops in a field of one or two positions.
class CTableIntItem : public CTableItem {
  public:
    // With a unit the value is a capacity in bytes.
    CTableIntItem(uint32_t columnId, int64_t value, bool withUnit)
        : CTableIntItem(columnId, withUnit ? NumberFormat::Capacity : NumberFormat::Decimal, value) {}

    size_t Render(TextLine& out, uint32_t width) const override;
    int64_t GetValue() const override { return m_value; }
    int32_t Compare(const CTableItem& other) const override;
    NumberedText GetSortValue() const override { return {{}, m_value}; }
    std::string GetText() const override { return std::string(FormatNumber(m_value, m_format).View()); }
    size_t GetTextLength() const override { return m_textLength; }

    // Chooses the text for the value. `precise` gives a capacity in MByte two decimals.
    void FormatValue(bool precise);

    void SetValue(int64_t value);

  protected:
    CTableIntItem(uint32_t columnId, NumberFormat format, int64_t value)
        : CTableItem(columnId, Alignment::Right), m_format(format) {
        SetValue(value);
    }

  private:
    NumberFormat m_format;
    uint8_t m_textLength = 0;  // in positions
    int64_t m_value = 0;
};

static_assert(sizeof(CTableIntItem) == 24);

// The number of a magazine, drive or slot: made from the zero-based number, it holds and shows the one-based
// one.
class CTableOneBasedIntItem final : public CTableIntItem {
  public:
    CTableOneBasedIntItem(uint32_t columnId, int32_t zeroBasedNumber)
        : CTableIntItem(columnId, NumberFormat::Decimal, int64_t{zeroBasedNumber} + 1) {}
};

// The used share of a capacity in whole percent. Its text ends in "%%", which the console shows as one
// character, so it is rendered one position wider than its field.
class CTablePercentIntItem final : public CTableIntItem {
  public:
    // `free` and `total` in bytes; a total below 1 is 0 percent used.
    CTablePercentIntItem(uint32_t columnId, int64_t free, int64_t total)
        : CTableIntItem(columnId, NumberFormat::Percent, UsedPercent(free, total)) {}

    size_t Render(TextLine& out, uint32_t width) const override;
};

// A text, aligned to the left. One that does not fit loses its beginning, and "..." replaces the first three
// characters of what is left when there are more. Numbers at the end of texts compare by value: Disc-9 before
// Disc-10.
class CTableStringItem : public CTableItem {
  public:
    CTableStringItem(uint32_t columnId, std::string_view text);

    size_t Render(TextLine& out, uint32_t width) const final;
    int32_t Compare(const CTableItem& other) const override;
    NumberedText GetSortValue() const override { return SortValueOf(View()); }
    std::string GetText() const override { return std::string(View()); }
    size_t GetTextLength() const override { return IsPlain() ? View().size() : MeasureText(); }

    bool OwnsHeapMemory() const override { return m_text.IsOnHeap(); }

    // The full text.
    std::string_view View() const { return m_text.View(); }

    void SetText(std::string_view text);

  protected:
    // Appends a text that is too long for `width` positions; returns the positions taken.
    virtual size_t RenderShortened(TextLine& out, std::string_view text, uint32_t width) const;

  private:
    enum class Content : uint8_t { PrintableAscii, Safe, Unsafe };

    static Content ContentOf(std::string_view text) {
        if (IsPrintableAscii(text)) return Content::PrintableAscii;
        return NeedsReplacing(text) ? Content::Unsafe : Content::Safe;
    }
    // Whether the text is printable ASCII: safe to show as it is.
    bool IsPlain() const { return m_content == Content::PrintableAscii; }
    // Whether the text holds characters that must not be shown as they are everywhere.
    bool IsUnsafe() const { return m_content == Content::Unsafe; }

    size_t MeasureText() const;
    // Render for a text of `length` positions that is safe to show.
    size_t RenderText(TextLine& out, std::string_view text, size_t length, uint32_t width) const;
    NumberedText SortValueOf(std::string_view text) const;

    Content m_content;
    CellText m_text;
};

static_assert(sizeof(CTableStringItem) == 40);

// A directory path with backslashes. One that does not fit is shortened like any text, with two exceptions:
// a path that begins and ends with a backslash is shown as "\...\", and one whose only backslashes are two
// in a row keeps its beginning.
class CTableDirItem final : public CTableStringItem {
  public:
    using CTableStringItem::CTableStringItem;

  protected:
    size_t RenderShortened(TextLine& out, std::string_view text, uint32_t width) const override;
};

}  // namespace Ostrel::UI::Console
