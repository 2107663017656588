#include "krvcmd/service/access/session.h"

namespace krvcmd {

KrvSession& GetSession() {
    static KrvSession session = 0;
    return session;
}

Status OpenSession(const std::string& serverName) {
    return CallLibrary(KrvSessionCreate, serverName.c_str(), &GetSession());
}

void CloseSession() {
    // Also after an interruption, so not by way of CallLibrary.
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
