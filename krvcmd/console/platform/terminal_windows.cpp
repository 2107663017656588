#include <io.h>

#include <cstdio>

#include "krvcmd/console/platform/terminal.h"

namespace Ostrel::UI::Console::Platform {

bool IsTerminal(Stream stream) {
    return _isatty(_fileno(stream == Stream::StandardOutput ? stdout : stderr)) != 0;
}

// They are letters and signs of the ANSI code page.
bool ObeysSingleBytes() {
    return false;
}

}  // namespace Ostrel::UI::Console::Platform
