#include <cerrno>
#include <csignal>

#include "krvcmd/console/platform/broken_pipe.h"

namespace Ostrel::UI::Console::Platform {

void SurviveBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

bool IsBrokenPipe(int error) {
    return error == EPIPE;
}

}  // namespace Ostrel::UI::Console::Platform
