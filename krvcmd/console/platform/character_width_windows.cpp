#include "krvcmd/console/platform/character_width.h"

namespace Ostrel::UI::Console::Platform {

// Texts are in the process's ANSI code page.
bool ReadsUtf8() {
    return false;
}

int CharacterWidth(char32_t /*codePoint*/) {
    return 1;
}

}  // namespace Ostrel::UI::Console::Platform
