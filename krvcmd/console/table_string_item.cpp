#include "krvcmd/console/table_string_item.h"

#include "krvcmd/console/shortened_text.h"

namespace Ostrel::UI::Console {

CTableStringItem::CTableStringItem(std::uint32_t columnId, std::string_view text)
    : CTableItem(columnId, Alignment::Left) {
    AssignText(text);
}

std::size_t CTableStringItem::RenderInto(std::string& out, std::uint32_t width) const {
    return Fits(width) ? RenderFitting(out, width) : AppendEnd(out, GetText(), width);
}

std::int32_t CTableStringItem::Compare(const CTableItem& other) const {
    return CompareNumberedTexts(GetOrderValue(), OrderValueOf(other.GetText()));
}

NumberedText CTableStringItem::OrderValueOf(std::string_view text) const {
    return IsNaturalCompare() ? SplitTrailingNumber(text) : NumberedText{text, 0};
}

}  // namespace Ostrel::UI::Console
