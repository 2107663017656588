#include "krvcmd/console/platform/console_platform.h"

#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdio>

namespace Ostrel::UI::Console::Platform {

bool IsTerminal(Stream stream) {
    return _isatty(_fileno(stream == Stream::StandardOutput ? stdout : stderr)) != 0;
}

// These bytes are letters and signs of the ANSI code page.
bool HasSingleByteControls() {
    return false;
}

int32_t ScreenBufferWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    return GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) != 0 ? info.dwSize.X : 0;
}

// Texts are in the process's ANSI code page.
bool ReadsUtf8() {
    return false;
}

int CharacterWidth(char32_t /*codePoint*/) {
    return 1;
}

// A broken pipe raises no signal.
void SurviveBrokenPipes() {}

// There is no such limit.
void SurviveFileSizeLimit() {}

// The C runtime reports a closed pipe in either way.
bool IsBrokenPipe(int error) {
    return error == EPIPE || error == EINVAL;
}

}  // namespace Ostrel::UI::Console::Platform
