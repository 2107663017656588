// One session of a caller with a server's service.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "embedded/calls/call_info.h"
#include "embedded/library/connection.h"
#include "embedded/library/observer.h"

namespace embedded {

class Session {
  public:
    // Opens the session; refuses unknown servers and stopped ones. The demonstration servers get
    // their farm here when they have none. The handle is for the journal.
    Session(const std::string& server, uint64_t handle);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() = default;

    // Runs a look: it sees the farm as of now or of the last commit, and nothing of a change that
    // another process has begun.
    template <typename LookFunction>
    void Read(const CallInfo& call, const LookFunction& look) {
        const std::scoped_lock lock(m_mutex);
        if (!IsObserved(m_connection.Refresh())) {
            RequireRunning();
            look(m_connection.GetView());
            return;
        }
        m_connection.StartWaiting();
        ObserveLook(m_connection, m_handle, call, [&](const View& view) {
            RequireRunning();
            look(view);
        });
    }

    // Runs a change as one transaction: all of it is kept, or, when it throws, nothing.
    void Write(const CallInfo& call, const Change& change);

    // The last call of the session, for the journal alone.
    void Close(const CallInfo& call);

  private:
    void RequireRunning() const;

    std::mutex m_mutex;
    std::string m_server;
    uint64_t m_handle;
    Connection m_connection;
    int64_t m_epoch = 0;  // that the session was opened in
};

// Starts the service of a server without a session.
void StartServer(const std::string& server, const CallInfo& call);

}  // namespace embedded
