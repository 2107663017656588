#include "embedded/library/open_session.h"

#include "embedded/sessions/local_session.h"

namespace embedded {

std::shared_ptr<ServiceSession> OpenSession(const std::string& server, KrvSession handle) {
    return std::make_shared<LocalSession>(server, handle);
}

void StartServiceOn(const std::string& server) {
    StartServer(server, {"KrvServiceStart", WithText({}, server.c_str())});
}

}  // namespace embedded
