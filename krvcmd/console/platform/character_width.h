#pragma once

namespace Ostrel::UI::Console::Platform {

// Whether texts are UTF-8 and terminals show them so. Where they are not, every byte takes one position.
bool ReadsUtf8();

// The positions that a terminal uses for a character of a UTF-8 text: 0, 1 or 2; 1 for one that it does not
// know.
int CharacterWidth(char32_t codePoint);

}  // namespace Ostrel::UI::Console::Platform
