#pragma once

#include <string>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/call.h"

namespace krvcmd {

// The program-wide session handle; 0 until the library writes it when a session is created.
KrvSession& GetSession();

// Calls `function` in the program's session. After an interruption the call is not made: system error 4.
template <class Function, class... Arguments>
Status CallLibrary(Function function, Arguments... arguments) {
    if (InterruptRequested()) return Status::SystemError(os_code::kInterrupted);
    const LibraryCallScope scope(LibraryCall::Ordinary);
    return CallInSession(GetSession(), function, arguments...);
}

// Opens the program's one session, with the service on `serverName` ("." = the local machine).
Status OpenSession(const std::string& serverName);

// Closes the session. Called also when none could be opened; a failure changes nothing.
void CloseSession();

// Service control. Stopping and restarting act on the server of the open session.
Status StartService(const std::string& serverName);
Status StopService();
Status RestartService();

}  // namespace krvcmd
