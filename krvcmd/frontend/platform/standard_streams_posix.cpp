#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "krvcmd/console/platform/broken_pipe.h"
#include "krvcmd/frontend/standard_streams.h"

namespace krvcmd {

void PrepareStandardStreams() {
    Ostrel::UI::Console::Platform::SurviveBrokenPipes();
    constexpr int kStandardDescriptors[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    for (const int descriptor : kStandardDescriptors) {
        if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free descriptor is this one. Opened the wrong way round, so that using the
        // stream goes on failing as with a closed descriptor.
        const int mode = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        (void)open("/dev/null", mode);
    }
}

}  // namespace krvcmd
