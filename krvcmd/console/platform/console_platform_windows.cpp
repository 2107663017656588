#include "krvcmd/console/platform/console_platform.h"

#include <io.h>
#include <windows.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>

namespace Ostrel::UI::Console::Platform {
namespace {

int DescriptorOf(Stream stream) {
    return _fileno(stream == Stream::StandardOutput ? stdout : stderr);
}

// The code page in which the console reads what is written to it. It need not be that of the texts.
UINT ConsoleCodePage() {
    const UINT codePage = GetConsoleOutputCP();
    return codePage == 0 ? GetACP() : codePage;
}

// The characters of all bytes; 0 for a byte that begins a pair.
std::array<wchar_t, 256> CharactersOf(UINT codePage) {
    std::array<wchar_t, 256> characters{};
    for (size_t byte = 0; byte < characters.size(); ++byte) {
        const auto text = static_cast<char>(byte);
        if (IsDBCSLeadByteEx(codePage, static_cast<BYTE>(byte)) != 0) continue;
        (void)MultiByteToWideChar(codePage, 0, &text, 1, &characters[byte], 1);
    }
    return characters;
}

}  // namespace

bool IsTerminal(Stream stream) {
    return _isatty(DescriptorOf(stream)) != 0;
}

bool TerminalMayDecodeUtf8() {
    return ConsoleCodePage() == CP_UTF8;
}

bool TerminalMayDecodeBytes() {
    return !TerminalMayDecodeUtf8();
}

char32_t CharacterOfByte(uint8_t byte) {
    static const std::array<wchar_t, 256> characters = CharactersOf(ConsoleCodePage());
    return characters[byte];
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

// The C runtime reports a closed pipe in either way, but other errors, too.
bool IsBrokenPipe(Stream stream, int error) {
    if (error != EPIPE && error != EINVAL) return false;
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(DescriptorOf(stream)));
    return GetFileType(handle) == FILE_TYPE_PIPE;
}

// A full disk makes a short write without a number or, as a quota does, an error that the C runtime does not
// know.
int WriteError(int error) {
    return error == 0 || error == EINVAL || error == EPIPE ? ENOSPC : error;
}

}  // namespace Ostrel::UI::Console::Platform
