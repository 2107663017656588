#include "krvcmd/console/table_int_item.h"

#include "krvcmd/console/decimal_text.h"

namespace Ostrel::UI::Console {

namespace {

constexpr std::string_view kDoesNotFit = "...";

}  // namespace

CTableIntItem::CTableIntItem(std::uint32_t columnId, std::int64_t value, NumberStyle style)
    : CTableItem(columnId, Alignment::Right), m_style(style), m_value(value) {
    CTableIntItem::FormatValue(CapacityPrecision::Whole);
}

void CTableIntItem::SetValue(std::int64_t value) {
    m_value = value;
    FormatValue(CapacityPrecision::Whole);
}

void CTableIntItem::FormatValue(CapacityPrecision precision) {
    if (m_style == NumberStyle::WithUnit) {
        AssignNumber(CapacityText(m_value, precision));
    } else {
        AssignNumber(DecimalText(m_value).View());
    }
}

std::size_t CTableIntItem::RenderInto(std::string& out, std::uint32_t width) const {
    if (Fits(width)) return RenderFitting(out, width);
    const std::string_view shown = kDoesNotFit.substr(0, width);
    out += shown;
    return shown.size();
}

std::int32_t CTableIntItem::Compare(const CTableItem& other) const {
    const std::int64_t otherValue = other.GetValue();
    if (m_value == otherValue) return 0;
    return m_value < otherValue ? -1 : 1;
}

}  // namespace Ostrel::UI::Console
