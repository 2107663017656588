#include "krvcmd/console/table_one_based_int_item.h"

#include "krvcmd/console/decimal_text.h"

namespace Ostrel::UI::Console {

CTableOneBasedIntItem::CTableOneBasedIntItem(std::uint32_t columnId, std::int32_t zeroBasedNumber)
    : CTableIntItem(columnId) {
    SetValue(std::int64_t{zeroBasedNumber} + 1);
}

void CTableOneBasedIntItem::FormatValue(CapacityPrecision /*precision*/) {
    AssignNumber(DecimalText(GetValue()).View());
}

}  // namespace Ostrel::UI::Console
