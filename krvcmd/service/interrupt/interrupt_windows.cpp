#include <windows.h>

#include <atomic>

#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

std::atomic<bool> interruptRequested = false;

// STATUS_CONTROL_C_EXIT, the exit status of programs that Ctrl-C ends.
constexpr UINT kEndedByControlC = 0xC000013A;

// Runs on a thread of its own that the system makes.
BOOL WINAPI RequestInterrupt(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
    // The library call in progress is not to hold up a second request, nor is what libraries do at an
    // orderly end.
    if (interruptRequested.exchange(true)) (void)TerminateProcess(GetCurrentProcess(), kEndedByControlC);
    return TRUE;
}

}  // namespace

void InstallInterruptHandler() {
    (void)SetConsoleCtrlHandler(RequestInterrupt, TRUE);
}

bool InterruptRequested() {
    return interruptRequested.load();
}

}  // namespace krvcmd
