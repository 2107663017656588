#include "krvcmd/console/text/numbers.h"

#include <cmath>
#include <limits>

namespace Ostrel::UI::Console {
namespace {

enum class Decimals : uint8_t { None, Two };

// One unit of a capacity. The limits are decimal multiples of the unit below, so 1000 bytes already
// count as KByte.
struct CapacityUnit {
    int64_t limit;  // in bytes; the unit serves values below it
    float divisor;
    Decimals decimals;
    Decimals preciseDecimals;
    std::string_view name;
};

constexpr std::array<CapacityUnit, 3> kUnits{{
    {1'024'000, 1024.0F, Decimals::None, Decimals::None, " KByte"},
    {1'048'576'000, 1'048'576.0F, Decimals::None, Decimals::Two, " MByte"},
    {1'073'741'824'000, 1'073'741'824.0F, Decimals::Two, Decimals::Two, " GByte"},
}};

// Divides in single precision: the digits shown depend on it. The quotient has 24 significant binary digits,
// so a hundred times as much is exact in double precision. Rounded to the nearest whole number, ties to even,
// it gives the digits of formatted printing.
void AppendQuotient(NumberText& text, int64_t dividend, float divisor, Decimals decimals) {
    const double quotient = static_cast<float>(dividend) / divisor;
    if (decimals == Decimals::None) {
        text.AppendNumber(std::llrint(quotient));
        return;
    }
    const int64_t hundredths = std::llrint(quotient * 100);
    text.AppendNumber(hundredths / 100);
    text.Append(".");
    text.AppendNumber(hundredths / 10 % 10);
    text.AppendNumber(hundredths % 10);
}

void AppendCapacity(NumberText& text, int64_t bytes, bool precise) {
    if (bytes == 0) {
        text.Append("0");
        return;
    }
    if (bytes < 1000) {
        // Shown unsigned, so a negative value becomes a very large one.
        text.AppendNumber(static_cast<uint64_t>(bytes));
        text.Append(" Byte");
        return;
    }
    for (const CapacityUnit& unit : kUnits) {
        if (bytes >= unit.limit) continue;
        AppendQuotient(text, bytes, unit.divisor, precise ? unit.preciseDecimals : unit.decimals);
        text.Append(unit.name);
        return;
    }
    // The first of the two steps to TByte is a division of whole numbers.
    AppendQuotient(text, bytes >> 20, 1'048'576.0F, Decimals::Two);
    text.Append(" TByte");
}

constexpr uint64_t kLargest = std::numeric_limits<int64_t>::max();

// (rest * 100) / total for rest < total < 2^63. The product can exceed 64 bits, so this is a long
// multiplication, one binary digit of 100 at a time, that keeps only the remainder of each step.
uint64_t PercentBelowWhole(uint64_t rest, uint64_t total) {
    constexpr unsigned kHundred = 100;
    uint64_t percent = 0;
    uint64_t remainder = 0;
    const auto add = [&](uint64_t summand) {
        remainder += summand;
        if (remainder < total) return;
        remainder -= total;
        ++percent;
    };
    for (unsigned digit = 64; digit != 0; digit >>= 1) {
        percent *= 2;
        add(remainder);
        if ((kHundred & digit) != 0) add(rest);
    }
    return percent;
}

int64_t PercentOf(uint64_t used, uint64_t total) {
    if (used <= kLargest / 100) return static_cast<int64_t>(used * 100 / total);
    const uint64_t whole = used / total;
    if (whole >= kLargest / 100) return static_cast<int64_t>(kLargest);
    return static_cast<int64_t>(whole * 100 + PercentBelowWhole(used % total, total));
}

}  // namespace

NumberText FormatNumber(int64_t value, NumberFormat format) {
    NumberText text;
    switch (format) {
        case NumberFormat::Decimal:
            text.AppendNumber(value);
            break;
        case NumberFormat::Capacity:
            AppendCapacity(text, value, /*precise=*/false);
            break;
        case NumberFormat::PreciseCapacity:
            AppendCapacity(text, value, /*precise=*/true);
            break;
        case NumberFormat::Percent:
            text.AppendNumber(value);
            text.Append("%%");
            break;
    }
    return text;
}

std::string CapacityText(int64_t bytes, bool precise) {
    const NumberFormat format = precise ? NumberFormat::PreciseCapacity : NumberFormat::Capacity;
    return std::string(FormatNumber(bytes, format).View());
}

int64_t UsedPercent(int64_t free, int64_t total) {
    if (total < 1) return 0;
    // The difference may need 64 bits without a sign.
    const auto unsignedFree = static_cast<uint64_t>(free);
    const auto unsignedTotal = static_cast<uint64_t>(total);
    return free <= total ? PercentOf(unsignedTotal - unsignedFree, unsignedTotal)
                         : -PercentOf(unsignedFree - unsignedTotal, unsignedTotal);
}

}  // namespace Ostrel::UI::Console
