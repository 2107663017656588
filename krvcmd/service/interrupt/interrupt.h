#pragma once

namespace krvcmd {

// From now on the first request to end the program (Ctrl-C, a termination signal) only sets a
// flag; a second one ends the process at once. A signal that the caller has switched off stays off.
void InstallInterruptHandler();

// True once the operator has asked the program to end. No library call is begun any more, but for
// closing the session.
bool InterruptRequested();

}  // namespace krvcmd
