#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace Ostrel::UI::Console {

// Makes of a format what formatted printing without arguments shows: "%%" becomes one percent sign, read from
// left to right; any other "%" stays. The first returns how many characters are left at the beginning of
// `text`.
size_t ResolvePercentSigns(std::span<char> text);
void ResolvePercentSigns(std::string& text);

}  // namespace Ostrel::UI::Console
