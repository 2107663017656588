#pragma once

#include <cstdint>
#include <string>

namespace Ostrel::UI::Console {

// Digits after the decimal point of a value in MByte; the other units have a fixed number of them.
enum class CapacityPrecision : std::uint8_t { Whole, TwoDecimals };

// A number of bytes with its unit, such as "650 MByte" or "4.38 GByte"; "0" stands without a unit.
std::string CapacityText(std::int64_t bytes, CapacityPrecision precision);

}  // namespace Ostrel::UI::Console
