#include <windows.h>

#include <atomic>

#include "krvcmd/service/interrupt.h"

namespace krvcmd {

namespace {

std::atomic<bool> interruptRequested = false;

// Runs on a thread of its own that the system makes.
BOOL WINAPI RequestInterrupt(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
    const bool alreadyRequested = interruptRequested.exchange(true);
    return alreadyRequested ? FALSE : TRUE;  // FALSE: the default handler ends the process
}

}  // namespace

void InstallInterruptHandler() {
    (void)SetConsoleCtrlHandler(RequestInterrupt, TRUE);
}

bool InterruptRequested() {
    return interruptRequested.load();
}

}  // namespace krvcmd
