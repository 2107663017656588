#include "krvcmd/console/text/percent_signs.h"

#include <string_view>

namespace Ostrel::UI::Console {

size_t ResolvePercentSigns(std::span<char> text) {
    constexpr std::string_view kDoubled = "%%";
    const std::string_view format(text.data(), text.size());
    size_t doubled = format.find(kDoubled);
    if (doubled == std::string_view::npos) return text.size();

    // Everything between two doubled signs moves left in one piece.
    size_t end = doubled;
    while (doubled != std::string_view::npos) {
        const size_t begin = doubled + 1;
        doubled = format.find(kDoubled, begin + 1);
        const size_t next = doubled == std::string_view::npos ? text.size() : doubled;
        std::char_traits<char>::move(&text[end], &text[begin], next - begin);
        end += next - begin;
    }
    return end;
}

void ResolvePercentSigns(std::string& text) {
    text.resize(ResolvePercentSigns(std::span(text)));
}

}  // namespace Ostrel::UI::Console
