#pragma once

#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

// Replaces every `placeholder` in `text`. After each replacement the search begins anew, so one that a
// replacement completes is replaced too. The replacement must not hold the placeholder.
void ReplacePlaceholder(std::string& text, std::string_view placeholder, std::string_view replacement);

}  // namespace Ostrel::UI::Console
