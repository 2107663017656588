#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/text/display_width.h"
#include "krvcmd/console/text/natural_order.h"
#include "krvcmd/console/text/safe_text.h"

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
    virtual size_t Render(std::string& out, uint32_t width) const = 0;

    // The number that number cells compare; 0 for a text.
    virtual int64_t GetValue() const { return 0; }

    // Exactly -1, 0 or +1: this cell comes before, with or after `other`.
    virtual int32_t Compare(const CTableItem& other) const = 0;

    // What Compare compares, read once from every cell when many rows are sorted: for two cells of one column
    // Compare equals CompareNumberedTexts of their sort values. Refers to the cell's text.
    virtual NumberedText GetSortValue() const = 0;

    uint32_t GetColumnId() const { return m_columnId; }

    // The full text. Render shows it in width 0, with "?" for what must not be shown.
    std::string_view GetText() const { return m_text.View(); }

    // The positions of a line that the full text takes, as standard output shows it.
    size_t GetTextLength() const { return IsPlain() ? GetText().size() : MeasureText(); }

    // Whether the text is printable ASCII: safe to show as it is.
    bool IsPlain() const { return m_content == Content::PrintableAscii; }

    // Whether only the destructor frees all of the cell's memory.
    bool OwnsHeapMemory() const { return m_text.IsOnHeap(); }

    void SetAlignment(Alignment alignment) { m_alignment = alignment; }

    // Whether a text cell compares a number at its end by value.
    void SetNaturalCompare(bool natural) { m_naturalCompare = natural; }

  protected:
    CTableItem(uint32_t columnId, Alignment alignment) : m_columnId(columnId), m_alignment(alignment) {}

    // Whether the text needs no shortening in a field of `width` positions.
    static bool Fits(size_t length, uint32_t width) { return width == 0 || length <= width; }
    // Render for a text of `length` positions that fits.
    size_t RenderFitting(std::string& out, std::string_view text, size_t length, uint32_t width) const;
    // Whether the text holds characters that must not be shown as they are everywhere.
    bool IsUnsafe() const { return m_content == Content::Unsafe; }

    bool IsNaturalCompare() const { return m_naturalCompare; }
    void AssignText(std::string_view text) {
        m_text.Assign(text);
        m_content = ContentOf(text);
    }
    // A text of printable ASCII.
    void AssignPlainText(std::string_view text) { m_text.Assign(text); }

  private:
    enum class Content : uint8_t { PrintableAscii, Safe, Unsafe };

    static Content ContentOf(std::string_view text) {
        if (IsPrintableAscii(text)) return Content::PrintableAscii;
        return NeedsReplacing(text) ? Content::Unsafe : Content::Safe;
    }
    size_t MeasureText() const;

    // In descending order of size, so that derived classes can use the bytes left over.
    CellText m_text;
    uint32_t m_columnId;
    Alignment m_alignment;
    bool m_naturalCompare = true;
    Content m_content = Content::PrintableAscii;
};

// A number, aligned to the right. One that does not fit is shown as "...", not padded, or as full stops in a
// field of one or two positions.
class CTableIntItem : public CTableItem {
  public:
    // With a unit the value is a capacity in bytes.
    CTableIntItem(uint32_t columnId, int64_t value, bool withUnit);

    size_t Render(std::string& out, uint32_t width) const override;
    int64_t GetValue() const override { return m_value; }
    int32_t Compare(const CTableItem& other) const override;
    NumberedText GetSortValue() const override { return {{}, m_value}; }

    // Rewrites the text from the value. `precise` gives a capacity in MByte two decimals.
    virtual void FormatValue(bool precise);

    void SetValue(int64_t value);

  protected:
    // For derived classes with a text of their own, which call SetValue in their constructors.
    explicit CTableIntItem(uint32_t columnId) : CTableItem(columnId, Alignment::Right) {}

  private:
    bool m_withUnit = false;
    int64_t m_value = 0;
};

// The number of a magazine, drive or slot: made from the zero-based number, it holds and shows the one-based
// one.
class CTableOneBasedIntItem final : public CTableIntItem {
  public:
    CTableOneBasedIntItem(uint32_t columnId, int32_t zeroBasedNumber);

    void FormatValue(bool precise) override;
};

// The used share of a capacity in whole percent. Its text ends in "%%", which the console shows as one
// character, so it is rendered one position wider than its field.
class CTablePercentIntItem final : public CTableIntItem {
  public:
    // `free` and `total` in bytes; a total below 1 is 0 percent used.
    CTablePercentIntItem(uint32_t columnId, int64_t free, int64_t total);

    size_t Render(std::string& out, uint32_t width) const override;
    void FormatValue(bool precise) override;
};

// A text, aligned to the left. One that does not fit loses its beginning, and "..." replaces the first three
// characters of what is left when there are more. Numbers at the end of texts compare by value: Disc-9 before
// Disc-10.
class CTableStringItem : public CTableItem {
  public:
    CTableStringItem(uint32_t columnId, std::string_view text);

    size_t Render(std::string& out, uint32_t width) const final;
    int32_t Compare(const CTableItem& other) const override;
    NumberedText GetSortValue() const override { return SortValueOf(GetText()); }

    void SetText(std::string_view text) { AssignText(text); }

  protected:
    // Appends a text that is too long for `width` positions; returns the positions taken.
    virtual size_t RenderShortened(std::string& out, std::string_view text, uint32_t width) const;

  private:
    size_t RenderSafeText(std::string& out, std::string_view text, uint32_t width) const;
    NumberedText SortValueOf(std::string_view text) const;
};

// A directory path with backslashes. Of one that does not fit the end is shown as of any text, with two
// exceptions: a path that begins and ends with a backslash is shown as "\...\", and one whose only
// backslashes are two in a row keeps its beginning.
class CTableDirItem final : public CTableStringItem {
  public:
    using CTableStringItem::CTableStringItem;

  protected:
    size_t RenderShortened(std::string& out, std::string_view text, uint32_t width) const override;
};

}  // namespace Ostrel::UI::Console
