#include "krvcmd/console/capacity_text.h"

#include <array>
#include <charconv>
#include <string_view>
#include <system_error>

#include "krvcmd/console/decimal_text.h"

namespace Ostrel::UI::Console {

namespace {

// One unit of a capacity. The limits are decimal multiples of the unit below, so 1000 bytes already
// count as KByte.
struct CapacityUnit {
    std::int64_t limit;  // in bytes; the unit serves values below it
    float divisor;
    int digits;  // after the decimal point
    int preciseDigits;
    std::string_view name;
};

constexpr std::array<CapacityUnit, 3> kUnits{{
    {1'024'000, 1024.0F, 0, 0, " KByte"},
    {1'048'576'000, 1'048'576.0F, 0, 2, " MByte"},
    {1'073'741'824'000, 1'073'741'824.0F, 2, 2, " GByte"},
}};

// The division is done in single precision; the digits shown depend on it.
std::string Quotient(std::int64_t dividend, float divisor, int digits, std::string_view unit) {
    const double quotient = static_cast<float>(dividend) / divisor;
    std::array<char, 32> text{};
    const std::to_chars_result result =
        std::to_chars(text.data(), text.data() + text.size(), quotient, std::chars_format::fixed, digits);
    return std::string(text.data(), result.ptr).append(unit);
}

}  // namespace

std::string CapacityText(std::int64_t bytes, CapacityPrecision precision) {
    if (bytes == 0) return "0";
    if (bytes < 1000) {
        // Shown unsigned, so a negative value becomes a very large one.
        return std::string(DecimalText(static_cast<std::uint64_t>(bytes)).View()).append(" Byte");
    }
    for (const CapacityUnit& unit : kUnits) {
        if (bytes >= unit.limit) continue;
        const int digits = precision == CapacityPrecision::Whole ? unit.digits : unit.preciseDigits;
        return Quotient(bytes, unit.divisor, digits, unit.name);
    }
    // The first of the two steps to TByte is a division of whole numbers.
    return Quotient(bytes >> 20, 1'048'576.0F, 2, " TByte");
}

}  // namespace Ostrel::UI::Console
