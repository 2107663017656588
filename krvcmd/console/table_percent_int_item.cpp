#include "krvcmd/console/table_percent_int_item.h"

#include "krvcmd/console/decimal_text.h"
#include "krvcmd/console/used_percent.h"

namespace Ostrel::UI::Console {

CTablePercentIntItem::CTablePercentIntItem(std::uint32_t columnId, std::int64_t free, std::int64_t total)
    : CTableIntItem(columnId) {
    SetValue(UsedPercent(free, total));
}

void CTablePercentIntItem::FormatValue(CapacityPrecision /*precision*/) {
    AssignNumber(std::string(DecimalText(GetValue()).View()).append("%%"));
}

std::size_t CTablePercentIntItem::RenderInto(std::string& out, std::uint32_t width) const {
    return CTableIntItem::RenderInto(out, width == 0 ? 0 : width + 1);
}

}  // namespace Ostrel::UI::Console
