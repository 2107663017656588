#pragma once

#include <memory>
#include <vector>

#include "embedded/attached/transport/iscsi_address.h"
#include "embedded/attached/transport/transport.h"

struct iscsi_context;

namespace embedded::attached {

// A target that a portal names, with the portals that lead to it.
struct IscsiTarget {
    std::string name;
    std::vector<IscsiPortal> portals;

    bool operator==(const IscsiTarget&) const = default;
};

// One login to a target, or to a portal to ask for its targets. libiscsi speaks the protocol; time limits and
// the end of the connection are watched here, since libiscsi by itself waits and reconnects for ever. Nothing
// is repeated: once a connection has failed, it stays unusable.
class IscsiSession {
  public:
    // Without a target: for ListTargets(). Looking up the host's name may take longer than the limit.
    static Result<std::unique_ptr<IscsiSession>> Open(const IscsiPortal& portal, const std::string& target,
                                                      const IscsiLogin& login, const IscsiLimits& limits);

    IscsiSession(const IscsiSession&) = delete;
    IscsiSession& operator=(const IscsiSession&) = delete;
    ~IscsiSession();

    // False once the connection has failed or the target has closed it.
    bool IsConnected() const;

    Result<Completion> Send(uint16_t lun, const Command& command);
    Result<std::vector<IscsiTarget>> ListTargets();

  private:
    using Instant = std::chrono::steady_clock::time_point;
    struct Outcome;
    struct ContextDeleter {
        void operator()(iscsi_context* context) const;
    };
    enum class Ending { Done, TimedOut, Silent, Lost };
    enum class Pings { No, Yes };

    IscsiSession(IscsiPortal portal, std::string target, const IscsiLimits& limits);

    // The target, or the portal when there is none.
    std::string Peer() const {
        return m_target.empty() ? m_portal.GetText() : m_target + " at " + m_portal.GetText();
    }

    void CreateContext(const IscsiLogin& login);
    Result<Nothing> Connect(Instant deadline, const IscsiLogin& login);
    Result<Nothing> ConnectTo(const std::string& numericPortal, Instant deadline);
    Result<Nothing> LogIn(Instant deadline, const IscsiLogin& login);
    void LogOut();
    Ending Run(const Outcome& outcome, Instant deadline, Pings pings);
    bool IsClosedByPeer() const;
    Error Drop(Ending ending, std::chrono::milliseconds limit);

    IscsiPortal m_portal;
    std::string m_target;
    IscsiLimits m_limits;
    std::unique_ptr<Outcome> m_connection;  // of connecting; libiscsi fills it as long as there is a context
    std::unique_ptr<iscsi_context, ContextDeleter> m_context;  // none once the connection has failed
};

}  // namespace embedded::attached
