#include "krvcmd/console/platform/console_platform.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <cwchar>

namespace Ostrel::UI::Console::Platform {
namespace {

// The character set of the user's locale. The process itself stays in the "C" locale: number formats and
// comparisons rely on it.
class UserLocale {
  public:
    UserLocale() : m_locale(newlocale(LC_CTYPE_MASK, "", nullptr)) {}
    ~UserLocale() {
        if (m_locale != nullptr) freelocale(m_locale);
    }
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;

    bool IsUtf8() const {
        return m_locale != nullptr && std::strcmp(nl_langinfo_l(CODESET, m_locale), "UTF-8") == 0;
    }

    int WidthOf(wchar_t character) const {
        const locale_t previous = uselocale(m_locale);
        const int width = wcwidth(character);
        uselocale(previous);
        return width;
    }

  private:
    locale_t m_locale;
};

// Created for the first text that is not printable ASCII: most runs never need it.
const UserLocale& GetUserLocale() {
    static const UserLocale locale;
    return locale;
}

}  // namespace

bool IsTerminal(Stream stream) {
    return isatty(stream == Stream::StandardOutput ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

// The locale need not be the terminal's.
bool TerminalMayDecodeUtf8() {
    return true;
}

bool TerminalMayDecodeBytes() {
    return !ReadsUtf8();
}

// As in ISO 8859-1: 0x80 to 0x9F are control characters in every 8-bit ISO character set.
char32_t CharacterOfByte(uint8_t byte) {
    return byte;
}

int32_t ScreenBufferWidth() {
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool ReadsUtf8() {
    static const bool isUtf8 = GetUserLocale().IsUtf8();
    return isUtf8;
}

int CharacterWidth(char32_t codePoint) {
    const int width = GetUserLocale().WidthOf(static_cast<wchar_t>(codePoint));
    return width < 0 ? 1 : width;
}

void SurviveBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

void SurviveFileSizeLimit() {
    std::signal(SIGXFSZ, SIG_IGN);
}

bool IsBrokenPipe(Stream /*stream*/, int error) {
    return error == EPIPE;
}

int WriteError(int error) {
    return error == 0 ? EIO : error;
}

}  // namespace Ostrel::UI::Console::Platform
