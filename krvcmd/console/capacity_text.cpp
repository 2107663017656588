#include "krvcmd/console/capacity_text.h"

#include <array>
#include <cmath>
#include <string_view>

#include "krvcmd/console/decimal_text.h"

namespace Ostrel::UI::Console {

namespace {

enum class Digits : std::uint8_t { None, Two };  // after the decimal point

// One unit of a capacity. The limits are decimal multiples of the unit below, so 1000 bytes already
// count as KByte.
struct CapacityUnit {
    std::int64_t limit;  // in bytes; the unit serves values below it
    float divisor;
    Digits digits;
    Digits preciseDigits;
    std::string_view name;
};

constexpr std::array<CapacityUnit, 3> kUnits{{
    {1'024'000, 1024.0F, Digits::None, Digits::None, " KByte"},
    {1'048'576'000, 1'048'576.0F, Digits::None, Digits::Two, " MByte"},
    {1'073'741'824'000, 1'073'741'824.0F, Digits::Two, Digits::Two, " GByte"},
}};

// The division is done in single precision; the digits shown depend on it. The quotient has 24 significant
// binary digits, so a hundred times as much is exact in double precision, and rounding that to the nearest
// whole number (to the even one of two) gives the digits that formatted printing would give.
std::string Quotient(std::int64_t dividend, float divisor, Digits digits, std::string_view unit) {
    const double quotient = static_cast<float>(dividend) / divisor;
    std::string text;
    if (digits == Digits::None) {
        text = DecimalText(std::llrint(quotient)).View();
    } else {
        const std::int64_t hundredths = std::llrint(quotient * 100);
        text = DecimalText(hundredths / 100).View();
        text += '.';
        text += static_cast<char>('0' + hundredths / 10 % 10);
        text += static_cast<char>('0' + hundredths % 10);
    }
    return text.append(unit);
}

}  // namespace

std::string CapacityText(std::int64_t bytes, CapacityPrecision precision) {
    if (bytes == 0) return "0";
    if (bytes < 1000) {
        // Shown unsigned, so a negative value becomes a very large one.
        std::string text(DecimalText(static_cast<std::uint64_t>(bytes)).View());
        return text += " Byte";
    }
    for (const CapacityUnit& unit : kUnits) {
        if (bytes >= unit.limit) continue;
        const Digits digits = precision == CapacityPrecision::Whole ? unit.digits : unit.preciseDigits;
        return Quotient(bytes, unit.divisor, digits, unit.name);
    }
    // The first of the two steps to TByte is a division of whole numbers.
    return Quotient(bytes >> 20, 1'048'576.0F, Digits::Two, " TByte");
}

}  // namespace Ostrel::UI::Console
