#include "krvcmd/console/trailing_number.h"

#include <cstddef>
#include <limits>

namespace Ostrel::UI::Console {

namespace {

constexpr std::string_view kSeparators = "-@,;:. ";
constexpr std::string_view kDigits = "0123456789";

std::int32_t ReadNumber(std::string_view digits) {
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    std::int64_t number = 0;
    for (const char digit : digits) {
        number = number * 10 + (digit - '0');
        if (number > kLargest) return kLargest;
    }
    return static_cast<std::int32_t>(number);
}

}  // namespace

NumberedText SplitTrailingNumber(std::string_view text) {
    std::string_view beforePercent = text;
    if (beforePercent.ends_with('%')) beforePercent.remove_suffix(1);

    const std::size_t stop = beforePercent.find_last_not_of(kDigits);
    const bool endsInStop = stop + 1 == text.size();
    if (stop == std::string_view::npos || endsInStop ||
        kSeparators.find(text[stop]) == std::string_view::npos) {
        return {text, 0};
    }
    return {text.substr(0, stop), ReadNumber(beforePercent.substr(stop + 1))};
}

}  // namespace Ostrel::UI::Console
