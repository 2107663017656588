#include "krvcmd/service/access/session.h"

#include "krvcmd/service/access/library_call.h"

namespace krvcmd {

Status OpenSession(const std::string& serverName) {
    return CallLibrary(KrvSessionCreate, serverName.c_str(), &GetSession());
}

void CloseSession() {
    // Also after an interruption, so not by way of CallLibrary.
    CallContext context;
    (void)KrvSessionClose(context.Get());
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
