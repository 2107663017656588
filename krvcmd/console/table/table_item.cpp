#include "krvcmd/console/table/table_item.h"

#include <cstring>

#include "krvcmd/console/text/numbers.h"

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

size_t CTableItem::MeasureText() const {
    if (!IsUnsafe()) return DisplayLength(GetText());
    return DisplayLength(SafeCellText(GetText(), SinkOf(Stream::StandardOutput)));
}

size_t CTableItem::RenderFitting(std::string& out, std::string_view text, size_t length,
                                 uint32_t width) const {
    if (width == 0) {
        out += text;
        return length;
    }
    const size_t blanks = width - length;
    const size_t start = out.size();
    out.append(text.size() + blanks, ' ');
    text.copy(&out[start + BlanksInFront(m_alignment, blanks)], text.size());
    return width;
}

CTableIntItem::CTableIntItem(uint32_t columnId, int64_t value, bool withUnit)
    : CTableItem(columnId, Alignment::Right), m_withUnit(withUnit), m_value(value) {
    CTableIntItem::FormatValue(/*precise=*/false);
}

void CTableIntItem::SetValue(int64_t value) {
    m_value = value;
    FormatValue(/*precise=*/false);
}

void CTableIntItem::FormatValue(bool precise) {
    if (m_withUnit) {
        AssignPlainText(CapacityText(m_value, precise));
    } else {
        AssignPlainText(DecimalText(m_value).View());
    }
}

size_t CTableIntItem::Render(std::string& out, uint32_t width) const {
    const size_t length = GetText().size();
    if (Fits(length, width)) return RenderFitting(out, GetText(), length, width);
    const std::string_view shown = kEllipsis.substr(0, width);
    out += shown;
    return shown.size();
}

int32_t CTableIntItem::Compare(const CTableItem& other) const {
    const int64_t otherValue = other.GetValue();
    if (m_value == otherValue) return 0;
    return m_value < otherValue ? -1 : 1;
}

CTableOneBasedIntItem::CTableOneBasedIntItem(uint32_t columnId, int32_t zeroBasedNumber)
    : CTableIntItem(columnId) {
    SetValue(int64_t{zeroBasedNumber} + 1);
}

void CTableOneBasedIntItem::FormatValue(bool /*precise*/) {
    AssignPlainText(DecimalText(GetValue()).View());
}

CTablePercentIntItem::CTablePercentIntItem(uint32_t columnId, int64_t free, int64_t total)
    : CTableIntItem(columnId) {
    SetValue(UsedPercent(free, total));
}

void CTablePercentIntItem::FormatValue(bool /*precise*/) {
    AssignPlainText(std::string(DecimalText(GetValue()).View()).append("%%"));
}

size_t CTablePercentIntItem::Render(std::string& out, uint32_t width) const {
    return CTableIntItem::Render(out, width == 0 ? 0 : width + 1);
}

CTableStringItem::CTableStringItem(uint32_t columnId, std::string_view text)
    : CTableItem(columnId, Alignment::Left) {
    AssignText(text);
}

size_t CTableStringItem::Render(std::string& out, uint32_t width) const {
    if (!IsUnsafe()) return RenderSafeText(out, GetText(), width);
    return RenderSafeText(out, SafeCellText(GetText(), SinkOf(Stream::StandardOutput)), width);
}

size_t CTableStringItem::RenderSafeText(std::string& out, std::string_view text, uint32_t width) const {
    const size_t length = IsPlain() ? text.size() : DisplayLength(text);
    if (Fits(length, width)) return RenderFitting(out, text, length, width);
    return RenderShortened(out, text, width);
}

size_t CTableStringItem::RenderShortened(std::string& out, std::string_view text, uint32_t width) const {
    return AppendElidedEnd(out, text, width);
}

int32_t CTableStringItem::Compare(const CTableItem& other) const {
    return CompareNumberedTexts(GetSortValue(), SortValueOf(other.GetText()));
}

NumberedText CTableStringItem::SortValueOf(std::string_view text) const {
    return IsNaturalCompare() ? SplitTrailingNumber(text) : NumberedText{text, 0};
}

size_t CTableDirItem::RenderShortened(std::string& out, std::string_view text, uint32_t width) const {
    // Positions are unsigned and wrap around: without a backslash `first` is 0 and `last` the largest
    // position, and with a single one `last - first` is the largest position.
    const size_t first = text.find('\\') + 1;
    const size_t last = text.rfind('\\');
    if (first == last) return AppendElidedBeginning(out, text, width);
    const size_t middle = last - first;
    if (middle > kEllipsis.size() && text.size() < middle + kEllipsis.size()) {
        // Only a path that begins and ends with a backslash is that short.
        constexpr std::string_view kElided = "\\...\\";
        out += kElided;
        return kElided.size();
    }
    return AppendElidedEnd(out, text, width);
}

}  // namespace Ostrel::UI::Console
