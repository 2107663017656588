#include "krvcmd/console/used_percent.h"

#include <limits>

namespace Ostrel::UI::Console {

namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();

// (rest * 100) / total for rest < total < 2^63: long multiplication, one binary digit of 100 after the
// other, in which only the remainder of each step is carried on.
std::uint64_t PercentBelowWhole(std::uint64_t rest, std::uint64_t total) {
    constexpr unsigned kHundred = 100;
    std::uint64_t percent = 0;
    std::uint64_t remainder = 0;
    const auto add = [&](std::uint64_t summand) {
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

std::int64_t PercentOf(std::uint64_t used, std::uint64_t total) {
    const std::uint64_t whole = used / total;
    if (whole >= kLargest / 100) return static_cast<std::int64_t>(kLargest);
    return static_cast<std::int64_t>(whole * 100 + PercentBelowWhole(used % total, total));
}

}  // namespace

std::int64_t UsedPercent(std::int64_t free, std::int64_t total) {
    if (total < 1) return 0;
    // Unsigned differences hold what a signed one could not when one of the two values is far off.
    const auto unsignedFree = static_cast<std::uint64_t>(free);
    const auto unsignedTotal = static_cast<std::uint64_t>(total);
    return free <= total ? PercentOf(unsignedTotal - unsignedFree, unsignedTotal)
                         : -PercentOf(unsignedFree - unsignedTotal, unsignedTotal);
}

}  // namespace Ostrel::UI::Console
