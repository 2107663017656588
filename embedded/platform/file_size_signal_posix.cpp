#include <cerrno>
#include <csignal>
#include <ctime>

#include "embedded/platform/file_size_signal.h"

namespace embedded {
namespace {

sigset_t OnlyFileSizeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGXFSZ);
    return signals;
}

}  // namespace

FileSizeSignalGuard::FileSizeSignalGuard() {
    sigset_t pending;
    sigemptyset(&pending);
    (void)sigpending(&pending);
    m_wasPending = sigismember(&pending, SIGXFSZ) == 1;
    const sigset_t signals = OnlyFileSizeSignal();
    sigset_t previous;
    sigemptyset(&previous);
    (void)pthread_sigmask(SIG_BLOCK, &signals, &previous);
    m_wasBlocked = sigismember(&previous, SIGXFSZ) == 1;
}

FileSizeSignalGuard::~FileSizeSignalGuard() {
    // Callers still ask why a write failed.
    const int lastError = errno;
    const sigset_t signals = OnlyFileSizeSignal();
    constexpr timespec kWithoutWaiting{};
    if (!m_wasPending) (void)sigtimedwait(&signals, nullptr, &kWithoutWaiting);
    if (!m_wasBlocked) (void)pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    errno = lastError;
}

}  // namespace embedded
