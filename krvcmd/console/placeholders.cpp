#include "krvcmd/console/placeholders.h"

#include <cstddef>

namespace Ostrel::UI::Console {

void ReplacePlaceholder(std::string& text, std::string_view placeholder, std::string_view replacement) {
    for (std::size_t at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder)) {
        text.replace(at, placeholder.size(), replacement);
    }
}

}  // namespace Ostrel::UI::Console
