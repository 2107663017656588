#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <string_view>

#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

constexpr std::string_view kWaiting =
    "Waiting up to 3 seconds for the service; another signal ends krvcmd at once.\n";
static_assert(kGracePeriod == 3, "the text names the grace period");

// What signal handlers may use, in whatever thread they run.

std::atomic<int64_t> requestedAt = 0;  // nanoseconds of the monotonic clock; 0: no request yet
std::atomic<int> requestedBy = 0;      // the signal
std::atomic<LibraryCall> callInProgress = LibraryCall::None;
std::atomic<bool> isWaitAnnounced = false;
std::atomic<bool> isWaitLong = false;
static_assert(std::atomic<int64_t>::is_always_lock_free && std::atomic<LibraryCall>::is_always_lock_free);

int64_t Now() {
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
    return now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
}

bool BelongsToFirstRequest(int64_t time) {
    return time - requestedAt < int64_t{kOneRequest} * 1'000'000'000;
}

void HandleSignal(int signal, void (*handler)(int)) {
    struct sigaction wanted = {};
    wanted.sa_handler = handler;
    // The library call in progress is to finish, so its system calls are not to fail.
    wanted.sa_flags = SA_RESTART;
    sigemptyset(&wanted.sa_mask);
    (void)sigaction(signal, &wanted, nullptr);
}

// GCOVR_EXCL_START: the counters of a process that a signal ends are lost
void EndBy(int signal) {
    HandleSignal(signal, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    (void)pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    (void)raise(signal);
}
// GCOVR_EXCL_STOP

extern "C" void WatchWait(int) {
    if (callInProgress == LibraryCall::None) return;  // GCOVR_EXCL_BR_LINE: the call has just ended
    if (isWaitLong.exchange(true)) {                  // GCOVR_EXCL_BR_LINE: as above
        EndBy(requestedBy);                           // GCOVR_EXCL_LINE: as above
        return;                                       // GCOVR_EXCL_LINE: as above
    }
    const int lastError = errno;
    if (!isWaitAnnounced.exchange(true)) (void)!write(STDERR_FILENO, kWaiting.data(), kWaiting.size());
    (void)alarm(kGracePeriod - kOneRequest);
    errno = lastError;
}

// Not inline: its stack frame is larger than library calls should pay for.
[[gnu::noinline]] void StartGracePeriod() {
    isWaitLong = false;
    HandleSignal(SIGALRM, WatchWait);
    (void)alarm(kOneRequest);
}

extern "C" void RequestInterrupt(int signal) {
    const int lastError = errno;
    const int64_t now = Now();
    int64_t notYet = 0;
    const bool isFirst = requestedAt.compare_exchange_strong(notYet, now);
    if (isFirst) requestedBy = signal;
    const LibraryCall call = callInProgress;
    if (isFirst ? call == LibraryCall::CreatesOrClosesSession : !BelongsToFirstRequest(now)) {
        EndBy(signal);  // GCOVR_EXCL_LINE: as above
    } else if (isFirst) {
        // Another thread may just be beginning a call and not see the request. Without one, the alarm does
        // nothing.
        StartGracePeriod();
    }
    errno = lastError;
}

}  // namespace

void InstallInterruptHandler() {
    for (const int signal : kSignals) {
        struct sigaction current = {};
        if (sigaction(signal, nullptr, &current) != 0 || current.sa_handler == SIG_IGN) continue;
        HandleSignal(signal, RequestInterrupt);
    }
}

bool InterruptRequested() {
    return requestedAt.load(std::memory_order_relaxed) != 0;
}

LibraryCallScope::LibraryCallScope(LibraryCall call) {
    // A handler in another thread must know at once that the session is being created or closed. Of an
    // ordinary call it may learn later, which makes the store much faster.
    if (call == LibraryCall::Ordinary) {
        callInProgress.store(call, std::memory_order_release);
    } else {
        callInProgress.store(call);
    }
    if (InterruptRequested()) StartGracePeriod();
}

LibraryCallScope::~LibraryCallScope() {
    // A handler that reads the old value in another thread only sets an alarm, which then finds no call.
    callInProgress.store(LibraryCall::None, std::memory_order_release);
    if (InterruptRequested()) (void)alarm(0);
}

}  // namespace krvcmd
