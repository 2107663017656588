#include "krvcmd/service/access/session.h"

namespace krvcmd {

KrvSession& GetSession() {
    static KrvSession session = 0;
    return session;
}

Status OpenSession(const std::string& serverName) {
    if (InterruptRequested()) return Status::SystemError(os_code::kInterrupted);
    const LibraryCallScope scope(LibraryCall::CreatesOrClosesSession);
    return CallInSession(GetSession(), KrvSessionCreate, serverName.c_str(), &GetSession());
}

void CloseSession() {
    // Also after an interruption, so not by way of CallLibrary.
    const LibraryCallScope scope(LibraryCall::CreatesOrClosesSession);
    (void)CallInSession(GetSession(), KrvSessionClose);
}

Status StartService(const std::string& serverName) {
    return CallLibrary(KrvServiceStart, serverName.c_str());
}

Status StopService() {
    return CallLibrary(KrvServiceStop);
}

Status RestartService() {
    return CallLibrary(KrvServiceRestart);
}

}  // namespace krvcmd
