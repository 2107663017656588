#include "krvcmd/console/text/natural_order.h"

#include <cstddef>
#include <limits>

namespace Ostrel::UI::Console {
namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsSeparator(char character) {
    switch (character) {
        case '-':
        case '@':
        case ',':
        case ';':
        case ':':
        case '.':
        case ' ':
            return true;
        default:
            return false;
    }
}

int64_t ReadNumber(std::string_view digits) {
    constexpr int64_t kLargest = std::numeric_limits<int32_t>::max();
    int64_t number = 0;
    for (const char digit : digits) {
        number = number * 10 + (digit - '0');
        if (number > kLargest) return kLargest;
    }
    return number;
}

}  // namespace

NumberedText SplitTrailingNumber(std::string_view text) {
    const size_t digitsEnd = text.ends_with('%') ? text.size() - 1 : text.size();
    size_t digitsBegin = digitsEnd;
    while (digitsBegin > 0 && IsDigit(text[digitsBegin - 1]))
        --digitsBegin;

    const bool isSplit = digitsBegin > 0 && digitsBegin < text.size() && IsSeparator(text[digitsBegin - 1]);
    if (!isSplit) return {text, 0};
    return {text.substr(0, digitsBegin - 1), ReadNumber(text.substr(digitsBegin, digitsEnd - digitsBegin))};
}

}  // namespace Ostrel::UI::Console
