#include "embedded/library/open_session.h"

#include <optional>

#include "embedded/model/refusal.h"
#include "embedded/remote/client/remote_session.h"
#include "embedded/remote/servers/server_list.h"
#include "embedded/sessions/local_session.h"

namespace embedded {
namespace {

// Farms of this machine come first, so that the list of other servers costs them nothing.
std::optional<remote::KnownServer> FindElsewhere(const std::string& server, const Refusal& refusal) {
    const auto code = static_cast<Code>(refusal.GetCode());
    if (code != Code::UnknownServer && code != Code::NoStateFolder) return std::nullopt;
    return remote::FindKnownServer(server);
}

}  // namespace

std::shared_ptr<ServiceSession> OpenSession(const std::string& server, KrvSession handle) {
    std::optional<remote::KnownServer> elsewhere;
    try {
        return std::make_shared<LocalSession>(server, handle);
    } catch (const Refusal& refusal) {
        elsewhere = FindElsewhere(server, refusal);
        if (!elsewhere.has_value()) throw;
    }
    return std::make_shared<remote::RemoteSession>(*elsewhere);
}

void StartServiceOn(const std::string& server) {
    std::optional<remote::KnownServer> elsewhere;
    try {
        StartServer(server, {"KrvServiceStart", WithText({}, server.c_str())});
        return;
    } catch (const Refusal& refusal) {
        elsewhere = FindElsewhere(server, refusal);
        if (!elsewhere.has_value()) throw;
    }
    remote::StartRemoteService(*elsewhere);
}

}  // namespace embedded
