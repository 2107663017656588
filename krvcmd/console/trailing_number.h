#pragma once

#include <cstdint>
#include <string_view>

namespace Ostrel::UI::Console {

// A text such as "Disc-12", taken apart for natural comparison.
struct NumberedText {
    std::string_view prefix;  // without the separator; the whole text when nothing was split off
    std::int32_t number = 0;  // at most 2147483647
};

// Splits off a number at the end of `text` (a last "%" behind its digits does not matter) that follows one
// of the separators "-@,;:. ". A text that ends in such a separator has no number.
NumberedText SplitTrailingNumber(std::string_view text);

}  // namespace Ostrel::UI::Console
