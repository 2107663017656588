#include "krvcmd/console/percent_signs.h"

#include <cstddef>
#include <string_view>

namespace Ostrel::UI::Console {

void ResolvePercentSigns(std::string& text) {
    constexpr std::string_view kDoubled = "%%";
    std::size_t doubled = text.find(kDoubled);
    if (doubled == std::string::npos) return;

    // Everything between two doubled signs moves to the left in one piece.
    std::size_t end = doubled;
    while (doubled != std::string::npos) {
        const std::size_t begin = doubled + 1;
        doubled = text.find(kDoubled, begin + 1);
        const std::size_t next = doubled == std::string::npos ? text.size() : doubled;
        std::char_traits<char>::move(&text[end], &text[begin], next - begin);
        end += next - begin;
    }
    text.resize(end);
}

}  // namespace Ostrel::UI::Console
