#include "krvcmd/console/table_string_item.h"

#include "krvcmd/console/shortened_text.h"
#include "krvcmd/console/trailing_number.h"

namespace Ostrel::UI::Console {

namespace {

std::int32_t Sign(std::int32_t number) {
    return (number > 0) - (number < 0);
}

std::int32_t CompareNaturally(std::string_view left, std::string_view right) {
    const NumberedText a = SplitTrailingNumber(left);
    const NumberedText b = SplitTrailingNumber(right);
    const std::int32_t prefixes = a.prefix.compare(b.prefix);
    return prefixes != 0 ? Sign(prefixes) : (a.number > b.number) - (a.number < b.number);
}

}  // namespace

CTableStringItem::CTableStringItem(std::uint32_t columnId, std::string_view text)
    : CTableItem(columnId, Alignment::Left) {
    AssignText(text);
}

void CTableStringItem::RenderInto(std::string& out, std::uint32_t width) const {
    if (RenderFitting(out, width)) return;
    AppendEnd(out, GetText(), width);
}

std::int32_t CTableStringItem::Compare(const CTableItem& other) const {
    return IsNaturalCompare() ? CompareNaturally(GetText(), other.GetText())
                              : Sign(GetText().compare(other.GetText()));
}

}  // namespace Ostrel::UI::Console
