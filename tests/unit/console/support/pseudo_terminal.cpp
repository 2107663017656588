#include "tests/unit/console/support/pseudo_terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace krvcmd::test {

PseudoTerminal::PseudoTerminal(std::uint16_t columns) {
    std::fflush(stdout);
    m_savedOutput = dup(STDOUT_FILENO);
    m_controller = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_controller < 0 || grantpt(m_controller) != 0 || unlockpt(m_controller) != 0) return;
    const int terminal = open(ptsname(m_controller), O_RDWR | O_NOCTTY);
    if (terminal < 0) return;
    winsize size{};
    size.ws_row = 25;
    size.ws_col = columns;
    m_isReady = ioctl(terminal, TIOCSWINSZ, &size) == 0 && dup2(terminal, STDOUT_FILENO) == STDOUT_FILENO;
    close(terminal);
}

PseudoTerminal::~PseudoTerminal() {
    std::fflush(stdout);
    dup2(m_savedOutput, STDOUT_FILENO);
    close(m_savedOutput);
    if (m_controller >= 0) close(m_controller);
}

}  // namespace krvcmd::test
