#pragma once

#include <cstdint>

namespace Ostrel::UI::Console {

// ((total - free) * 100) / total, truncated towards zero; 0 when `total` is below 1. The intermediate
// values cannot overflow; a result beyond 64 bits becomes the largest number.
std::int64_t UsedPercent(std::int64_t free, std::int64_t total);

}  // namespace Ostrel::UI::Console
