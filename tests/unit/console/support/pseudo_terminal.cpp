#include "tests/unit/console/support/pseudo_terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace krvcmd::test {

PseudoTerminal::PseudoTerminal(uint16_t columns) {
    std::fflush(stdout);
    m_savedOutput = dup(STDOUT_FILENO);
    m_controller = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_controller < 0 || grantpt(m_controller) != 0 || unlockpt(m_controller) != 0) return;
    const int terminal = open(ptsname(m_controller), O_RDWR | O_NOCTTY);
    if (terminal < 0) return;
    termios settings{};
    if (tcgetattr(terminal, &settings) != 0) return;
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    if (tcsetattr(terminal, TCSANOW, &settings) != 0) return;
    winsize size{};
    size.ws_row = 25;
    size.ws_col = columns;
    m_isReady = ioctl(terminal, TIOCSWINSZ, &size) == 0 && dup2(terminal, STDOUT_FILENO) == STDOUT_FILENO;
    close(terminal);
}

std::string PseudoTerminal::ReadText() const {
    std::fflush(stdout);
    std::string text;
    std::array<char, 4096> part{};
    pollfd input{m_controller, POLLIN, 0};
    while (poll(&input, 1, 100) == 1) {
        const ssize_t size = read(m_controller, part.data(), part.size());
        if (size <= 0) break;
        text.append(part.data(), static_cast<size_t>(size));
    }
    return text;
}

PseudoTerminal::~PseudoTerminal() {
    std::fflush(stdout);
    dup2(m_savedOutput, STDOUT_FILENO);
    close(m_savedOutput);
    if (m_controller >= 0) close(m_controller);
}

}  // namespace krvcmd::test
