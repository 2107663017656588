#pragma once

#include <memory>
#include <string>

#include "embedded/service/service_session.h"

namespace embedded {

// Opens a session with the service of a server. The handle is for the journal.
std::shared_ptr<ServiceSession> OpenSession(const std::string& server, KrvSession handle);

// Starts the service of a server without a session.
void StartServiceOn(const std::string& server);

}  // namespace embedded
