#pragma once

#include <cstdint>
#include <string_view>

namespace Ostrel::UI::Console {

// What a cell is sorted by: a text and, among equal texts, a number. The text cell "Disc-12" is sorted by the
// text "Disc" and the number 12, a number cell by an empty text and its value.
struct NumberedText {
    std::string_view text;
    int64_t number = 0;
};

// Exactly -1, 0 or +1: the number of `left` comes before, with or after that of `right`.
inline int32_t CompareNumbers(const NumberedText& left, const NumberedText& right) {
    if (left.number == right.number) return 0;
    return left.number < right.number ? -1 : 1;
}

// Exactly -1, 0 or +1: `left` comes before, with or after `right`. Texts compare byte by byte.
inline int32_t CompareNumberedTexts(const NumberedText& left, const NumberedText& right) {
    const int32_t texts = left.text.compare(right.text);
    if (texts != 0) return texts < 0 ? -1 : 1;
    return CompareNumbers(left, right);
}

// Splits off the number at the end of `text` that follows one of the separators "-@,;:. "; a "%" after its
// digits is ignored. The separator belongs to neither part. The number is at most 2147483647. A text without
// such a number is returned whole, with the number 0; so is one that ends in the separator.
NumberedText SplitTrailingNumber(std::string_view text);

}  // namespace Ostrel::UI::Console
