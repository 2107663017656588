#include "krvcmd/console/table/table_item.h"

#include <algorithm>
#include <cstring>

#include "krvcmd/console/text/display_width.h"

namespace Ostrel::UI::Console {
namespace {

size_t BlanksInFront(Alignment alignment, size_t blanks) {
    if (alignment == Alignment::Left) return 0;
    return alignment == Alignment::Centre ? blanks / 2 : blanks;
}

}  // namespace

CellText::CellText(std::string_view text) {
    Assign(text);
}

void CellText::Assign(std::string_view text) {
    // Freed last: the new text may be a part of it.
    const char* const oldHeapText = IsOnHeap() ? GetHeapText().data : nullptr;
    if (text.size() <= kInlineCapacity) {
        std::char_traits<char>::move(m_bytes.data(), text.data(), text.size());
        m_bytes.back() = static_cast<char>(text.size());
    } else {
        const HeapText heapText{new char[text.size()], static_cast<uint32_t>(text.size())};
        text.copy(heapText.data, text.size());
        std::memcpy(m_bytes.data(), &heapText, sizeof heapText.data + sizeof heapText.size);
        m_bytes.back() = kOnHeap;
    }
    delete[] oldHeapText;
}

CellText::HeapText CellText::GetHeapText() const {
    HeapText heapText{};
    std::memcpy(&heapText, m_bytes.data(), sizeof heapText.data + sizeof heapText.size);
    return heapText;
}

inline size_t CTableItem::RenderFitting(TextLine& out, std::string_view text, size_t length,
                                        uint32_t width) const {
    const size_t blanks = width == 0 ? 0 : width - length;
    char* const field = out.AppendBlanks(text.size() + blanks);
    text.copy(field + BlanksInFront(m_alignment, blanks), text.size());
    return length + blanks;
}

void CTableIntItem::SetValue(int64_t value) {
    m_value = value;
    FormatValue(/*precise=*/false);
}

void CTableIntItem::FormatValue(bool precise) {
    const bool isCapacity = m_format == NumberFormat::Capacity || m_format == NumberFormat::PreciseCapacity;
    if (isCapacity) m_format = precise ? NumberFormat::PreciseCapacity : NumberFormat::Capacity;
    m_textLength = static_cast<uint8_t>(FormatNumber(m_value, m_format).View().size());
}

size_t CTableIntItem::Render(TextLine& out, uint32_t width) const {
    if (Fits(m_textLength, width))
        return RenderFitting(out, FormatNumber(m_value, m_format).View(), m_textLength, width);
    const std::string_view shown = kEllipsis.substr(0, width);
    out.Append(shown);
    return shown.size();
}

int32_t CTableIntItem::Compare(const CTableItem& other) const {
    const int64_t otherValue = other.GetValue();
    if (m_value == otherValue) return 0;
    return m_value < otherValue ? -1 : 1;
}

size_t CTablePercentIntItem::Render(TextLine& out, uint32_t width) const {
    return CTableIntItem::Render(out, width == 0 ? 0 : width + 1);
}

CTableStringItem::CTableStringItem(uint32_t columnId, std::string_view text)
    : CTableItem(columnId, Alignment::Left), m_content(ContentOf(text)), m_text(text) {}

void CTableStringItem::SetText(std::string_view text) {
    const Content content = ContentOf(text);
    m_text.Assign(text);
    m_content = content;
}

size_t CTableStringItem::MeasureText() const {
    if (!IsUnsafe()) return DisplayLength(View());
    return DisplayLength(SafeCellText(View(), SinkOf(Stream::StandardOutput)));
}

size_t CTableStringItem::Render(TextLine& out, uint32_t width) const {
    if (IsPlain()) return RenderText(out, View(), View().size(), width);
    if (!IsUnsafe()) return RenderText(out, View(), DisplayLength(View()), width);
    const std::string text = SafeCellText(View(), SinkOf(Stream::StandardOutput));
    return RenderText(out, text, DisplayLength(text), width);
}

inline size_t CTableStringItem::RenderText(TextLine& out, std::string_view text, size_t length,
                                           uint32_t width) const {
    return Fits(length, width) ? RenderFitting(out, text, length, width) : RenderShortened(out, text, width);
}

size_t CTableStringItem::RenderShortened(TextLine& out, std::string_view text, uint32_t width) const {
    return AppendElidedEnd(out, text, width);
}

int32_t CTableStringItem::Compare(const CTableItem& other) const {
    return CompareNumberedTexts(GetSortValue(), SortValueOf(other.GetText()));
}

NumberedText CTableStringItem::SortValueOf(std::string_view text) const {
    return IsNaturalCompare() ? SplitTrailingNumber(text) : NumberedText{text, 0};
}

size_t CTableDirItem::RenderShortened(TextLine& out, std::string_view text, uint32_t width) const {
    // Positions are unsigned and wrap around: without a backslash `first` is 0 and `last` the largest
    // position, and with a single one `last - first` is the largest position.
    const size_t first = text.find('\\') + 1;
    const size_t last = text.rfind('\\');
    if (first == last) return AppendElidedBeginning(out, text, width);
    const size_t middle = last - first;
    if (middle > kEllipsis.size() && text.size() < middle + kEllipsis.size()) {
        // Only a path that begins and ends with a backslash is that short.
        constexpr std::string_view kElided = "\\...\\";
        out.Append(kElided);
        return kElided.size();
    }
    return AppendElidedEnd(out, text, width);
}

}  // namespace Ostrel::UI::Console
