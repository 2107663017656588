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
        AssignText(CapacityText(m_value, precision));
    } else {
        AssignText(DecimalText(m_value).View());
    }
}

void CTableIntItem::RenderInto(std::string& out, std::uint32_t width) const {
    if (RenderFitting(out, width)) return;
    out += width < kDoesNotFit.size() ? kDoesNotFit.substr(0, width) : kDoesNotFit;
}

std::int32_t CTableIntItem::Compare(const CTableItem& other) const {
    const std::int64_t otherValue = other.GetValue();
    if (m_value == otherValue) return 0;
    return m_value < otherValue ? -1 : 1;
}

}  // namespace Ostrel::UI::Console
