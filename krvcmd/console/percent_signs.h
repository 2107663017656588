#pragma once

#include <string>

namespace Ostrel::UI::Console {

// Turns a text as formatted printing takes it into the text that shows: from left to right, "%%" becomes one
// per cent sign; a per cent sign without a second one stays. Nothing else is a conversion.
void ResolvePercentSigns(std::string& text);

}  // namespace Ostrel::UI::Console
