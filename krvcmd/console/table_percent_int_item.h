#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "krvcmd/console/table_int_item.h"

namespace Ostrel::UI::Console {

// The column of percent cells. Layout gives a line one more position for each cell of this column.
inline constexpr std::uint32_t kPercentColumnId = 12;

// The used share of a capacity in whole per cent. Its text ends in "%%", which the console shows as one
// character; therefore it is rendered one position wider than the column.
class CTablePercentIntItem final : public CTableIntItem {
  public:
    // `free` and `total` in bytes; a total below 1 counts as 0 per cent used.
    CTablePercentIntItem(std::uint32_t columnId, std::int64_t free, std::int64_t total);

    std::size_t RenderInto(std::string& out, std::uint32_t width) const override;
    void FormatValue(CapacityPrecision precision) override;
};

}  // namespace Ostrel::UI::Console
