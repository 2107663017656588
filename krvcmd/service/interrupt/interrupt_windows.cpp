#include <windows.h>

#include <atomic>
#include <cstdio>

#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

constexpr DWORD kMillisecondsPerSecond = 1000;

constexpr const char* kWaiting =
    "Waiting up to 3 seconds for the service; another signal ends krvcmd at once.\n";
static_assert(kGracePeriod == 3, "the text names the grace period");

// STATUS_CONTROL_C_EXIT, the exit status of programs that Ctrl-C ends.
constexpr UINT kEndedByControlC = 0xC000013A;

std::atomic<ULONGLONG> requestedAt = 0;  // milliseconds since the system's start; 0: no request yet
std::atomic<LibraryCall> callInProgress = LibraryCall::None;
// Grows with every call.
std::atomic<unsigned> callNumber = 0;

// Does not wait for what libraries do at an orderly end.
void EndAtOnce() {
    (void)TerminateProcess(GetCurrentProcess(), kEndedByControlC);
}

// Watches the call in progress, which is `number`.
bool IsStillInProgress(unsigned number) {
    return callInProgress != LibraryCall::None && callNumber == number;
}

// Runs on a thread of its own from the first request on, so that further requests are not held up.
DWORD WINAPI WatchWaits(void*) {
    bool isAnnounced = false;
    for (;;) {
        const unsigned number = callNumber;
        Sleep(kOneRequest * kMillisecondsPerSecond);
        if (!IsStillInProgress(number)) continue;
        if (!isAnnounced) (void)std::fputs(kWaiting, stderr);
        (void)std::fflush(stderr);
        isAnnounced = true;
        Sleep((kGracePeriod - kOneRequest) * kMillisecondsPerSecond);
        if (IsStillInProgress(number)) EndAtOnce();
    }
}

// Runs on a thread of its own that the system makes.
BOOL WINAPI RequestInterrupt(DWORD event) {
    const ULONGLONG now = GetTickCount64();
    ULONGLONG notYet = 0;
    if (requestedAt.compare_exchange_strong(notYet, now)) {
        if (callInProgress == LibraryCall::CreatesOrClosesSession) EndAtOnce();
        const HANDLE thread = CreateThread(nullptr, 0, WatchWaits, nullptr, 0, nullptr);
        if (thread != nullptr) (void)CloseHandle(thread);
    } else if (now - notYet >= kOneRequest * kMillisecondsPerSecond) {
        EndAtOnce();
    }
    // When the console is closed or the user logs off, the system ends the process as soon as this function
    // returns, and otherwise after some seconds.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

}  // namespace

void InstallInterruptHandler() {
    (void)SetConsoleCtrlHandler(RequestInterrupt, TRUE);
}

bool InterruptRequested() {
    return requestedAt.load(std::memory_order_relaxed) != 0;
}

LibraryCallScope::LibraryCallScope(LibraryCall call) {
    ++callNumber;
    callInProgress = call;
}

LibraryCallScope::~LibraryCallScope() {
    callInProgress = LibraryCall::None;
}

}  // namespace krvcmd
