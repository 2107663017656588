#include "embedded/attached/transport/iscsi_transport.h"

namespace embedded::attached {
namespace {

class IscsiTransport : public Transport {
  public:
    IscsiTransport(IscsiAddress address, IscsiLogin login, const IscsiLimits& limits)
        : m_address(std::move(address)), m_login(std::move(login)), m_limits(limits) {}

    Result<Completion> Send(const Command& command) override {
        return m_session->Send(m_address.lun, command);
    }

    bool IsConnected() const override { return m_session && m_session->IsConnected(); }

    Result<Nothing> Reconnect() override {
        auto session = IscsiSession::Open(m_address.portal, m_address.target, m_login, m_limits);
        if (!session) return session.GetError();
        m_session = std::move(*session);
        return Nothing();
    }

    std::string GetAddress() const override { return m_address.GetText(); }

  private:
    IscsiAddress m_address;
    IscsiLogin m_login;
    IscsiLimits m_limits;
    std::unique_ptr<IscsiSession> m_session;  // there once OpenIscsiTransport() has returned it
};

}  // namespace

Result<std::unique_ptr<Transport>> OpenIscsiTransport(const IscsiAddress& address, const IscsiLogin& login,
                                                      const IscsiLimits& limits) {
    auto transport = std::make_unique<IscsiTransport>(address, login, limits);
    const auto connected = transport->Reconnect();
    if (!connected) return connected.GetError();
    return std::unique_ptr<Transport>(std::move(transport));
}

Result<std::vector<IscsiTarget>> ListIscsiTargets(const IscsiPortal& portal, const IscsiLogin& login,
                                                  const IscsiLimits& limits) {
    const auto session = IscsiSession::Open(portal, "", login, limits);
    if (!session) return session.GetError();
    return (*session)->ListTargets();
}

}  // namespace embedded::attached
