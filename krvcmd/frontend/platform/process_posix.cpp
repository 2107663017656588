#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {

void PrepareStandardStreams() {
    Ostrel::UI::Console::Platform::SurviveBrokenPipes();
    Ostrel::UI::Console::Platform::SurviveFileSizeLimit();
    constexpr int kStandardDescriptors[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    for (const int descriptor : kStandardDescriptors) {
        if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free descriptor is this one. It is opened in the wrong direction, so that using the
        // stream still fails as on a closed descriptor.
        const int mode = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        (void)open("/dev/null", mode);
    }
}

bool ArgumentsAreIntact() {
    return true;
}

int ExitStatus(uint32_t code) {
    constexpr uint32_t kReportable = 0xFF;
    if (code == 0) return 0;
    const uint32_t lowBits = code & kReportable;
    return static_cast<int>(lowBits == 0 ? kReportable : lowBits);
}

}  // namespace krvcmd
