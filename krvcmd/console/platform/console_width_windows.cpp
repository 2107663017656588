#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include "krvcmd/console/platform/console_width.h"

namespace Ostrel::UI::Console::Platform {

std::int32_t ScreenBufferWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    return GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) != 0 ? info.dwSize.X : 0;
}

}  // namespace Ostrel::UI::Console::Platform
