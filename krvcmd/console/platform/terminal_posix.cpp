#include <unistd.h>

#include "krvcmd/console/platform/terminal.h"

namespace Ostrel::UI::Console::Platform {

bool IsTerminal(Stream stream) {
    return isatty(stream == Stream::StandardOutput ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

bool ObeysSingleBytes() {
    return true;
}

}  // namespace Ostrel::UI::Console::Platform
