#include "embedded/attached/base/device_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace embedded::attached {

std::string Printable(std::string_view text) {
    std::string printable(text);
    std::ranges::replace_if(
        printable, [](char c) { return c < ' ' || c > '~'; }, '?');
    return printable;
}

std::string HexText(unsigned value, int digits) {
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "%0*Xh", digits, value);
    return text.data();
}

}  // namespace embedded::attached
