#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace Ostrel::UI::Console {

// Replaces each "%%" by "%", from left to right; any other "%" stays. The first returns how many characters
// are left at the beginning of `text`.
size_t ResolvePercentSigns(std::span<char> text);
void ResolvePercentSigns(std::string& text);

}  // namespace Ostrel::UI::Console
