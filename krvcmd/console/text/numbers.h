#pragma once

#include <cstdint>
#include <string>

#include "krvcmd/console/text/short_text.h"

namespace Ostrel::UI::Console {

// How a number is written: as it is; as a capacity in bytes with a unit; or with the two signs that a format
// takes for one percent sign. A precise capacity gives values in MByte two decimals.
enum class NumberFormat : uint8_t { Decimal, Capacity, PreciseCapacity, Percent };

// The longest is 20 digits and " Byte".
using NumberText = ShortText<32>;

NumberText FormatNumber(int64_t value, NumberFormat format);

// A number of bytes with its unit, such as "650 MByte" or "4.38 GByte"; "0" has no unit. `precise` gives
// values in MByte two decimals; every other unit has a fixed number of them.
std::string CapacityText(int64_t bytes, bool precise);

// ((total - free) * 100) / total, truncated towards zero; 0 when `total` is below 1. Nothing overflows on the
// way; a result beyond 64 bits becomes the largest number.
int64_t UsedPercent(int64_t free, int64_t total);

}  // namespace Ostrel::UI::Console
