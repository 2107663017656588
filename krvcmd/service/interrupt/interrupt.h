#pragma once

#include <cstdint>

namespace krvcmd {

// How long a call of the client library may go on after a request to end the program, in seconds.
inline constexpr unsigned kGracePeriod = 3;

// Further requests within this time, in seconds, belong to the first one: some programs send their signal to
// a process and to its group. A wait for the service that lasts longer is announced on standard error.
inline constexpr unsigned kOneRequest = 1;

// From now on a request to end the program (Ctrl-C, a termination signal, a closed terminal) only sets a
// flag, so that the call of the client library in progress can finish. The program ends at once when
//  - the session is just being created or closed,
//  - a call goes on for longer than the grace period,
//  - another request comes.
// It then ends as such a request ends any program. A signal that the caller has switched off stays off.
void InstallInterruptHandler();

// True once the operator has asked the program to end. No library call is begun any more, but for
// closing the session.
bool InterruptRequested();

enum class LibraryCall : uint8_t { None, Ordinary, CreatesOrClosesSession };

// Exists while a call of the client library is in progress; one at a time.
class LibraryCallScope {
  public:
    explicit LibraryCallScope(LibraryCall call);
    ~LibraryCallScope();
    LibraryCallScope(const LibraryCallScope&) = delete;
    LibraryCallScope& operator=(const LibraryCallScope&) = delete;
};

}  // namespace krvcmd
