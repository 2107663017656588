#pragma once

#include <string>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// Opens the program's one session, with the service on `serverName` ("." = the local machine).
Status OpenSession(const std::string& serverName);

// Closes the session. Called also when none could be opened; a failure changes nothing.
void CloseSession();

// Service control. Stopping and restarting act on the server of the open session.
Status StartService(const std::string& serverName);
Status StopService();
Status RestartService();

}  // namespace krvcmd
