#include <csignal>

#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

// What a signal handler may write to.
volatile std::sig_atomic_t interruptRequested = 0;

constexpr int kSignals[] = {SIGINT, SIGTERM};

extern "C" void RequestInterrupt(int) {
    interruptRequested = 1;
    for (const int signal : kSignals)
        std::signal(signal, SIG_DFL);
}

}  // namespace

void InstallInterruptHandler() {
    for (const int signal : kSignals) {
        struct sigaction current = {};
        if (sigaction(signal, nullptr, &current) != 0 || current.sa_handler == SIG_IGN) continue;
        struct sigaction wanted = {};
        wanted.sa_handler = RequestInterrupt;
        // The library call in progress is to finish, so its system calls are not to fail.
        wanted.sa_flags = SA_RESTART;
        sigemptyset(&wanted.sa_mask);
        (void)sigaction(signal, &wanted, nullptr);
    }
}

bool InterruptRequested() {
    return interruptRequested != 0;
}

}  // namespace krvcmd
