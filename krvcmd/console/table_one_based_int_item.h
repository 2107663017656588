#pragma once

#include <cstdint>

#include "krvcmd/console/table_int_item.h"

namespace Ostrel::UI::Console {

// The number of a magazine, drive or slot: constructed from the library's zero-based number, holds and
// shows the one-based number that users know.
class CTableOneBasedIntItem final : public CTableIntItem {
  public:
    CTableOneBasedIntItem(std::uint32_t columnId, std::int32_t zeroBasedNumber);

    void FormatValue(CapacityPrecision precision) override;
};

}  // namespace Ostrel::UI::Console
