#include <cerrno>

#include "krvcmd/console/platform/broken_pipe.h"

namespace Ostrel::UI::Console::Platform {

// There is no signal that could end the process.
void SurviveBrokenPipes() {}

// The C runtime reports a closed pipe in both ways.
bool IsBrokenPipe(int error) {
    return error == EPIPE || error == EINVAL;
}

}  // namespace Ostrel::UI::Console::Platform
