#include <sys/ioctl.h>
#include <unistd.h>

#include "krvcmd/console/platform/console_width.h"

namespace Ostrel::UI::Console::Platform {

std::int32_t ScreenBufferWidth() {
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace Ostrel::UI::Console::Platform
