#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "embedded/journal/call_info.h"
#include "embedded/mechanics/attached_farm.h"
#include "embedded/operations/operation.h"
#include "embedded/sessions/connection.h"
#include "embedded/sessions/observer.h"
#include "embedded/store/change_number.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// One session of a caller with a server's service.
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
        // In a farm that cannot be written, calls are not recorded and faults not counted.
        if (!IsObserved(m_connection.Refresh()) || m_connection.GetDatabase().IsReadOnly()) {
            RequireRunning();
            look(m_connection.GetView());
            return;
        }
        m_connection.StartWaiting();
        ObserveLook(m_connection, m_recorder, m_handle, call, [&](const View& view) {
            RequireRunning();
            look(view);
        });
    }

    // Runs a look that is no call of the caller's, in the view that the last call had or a newer one. With a
    // journal or faults every call counts by itself: then the look is not run, and the result is false.
    template <typename LookFunction>
    bool ReadBetweenCalls(const LookFunction& look) {
        const std::scoped_lock lock(m_mutex);
        if (IsObserved(m_connection.Refresh())) return false;
        RequireRunning();
        look(m_connection.GetView());
        return true;
    }

    // The next change is kept together with this number.
    void NumberNextChange(const ChangeNumber& number) { m_nextNumber = number; }

    // Runs a change as one transaction: all of it is kept, or, when it throws, nothing.
    void Write(const CallInfo& call, const Change& change);

    // Runs a call that handles media. `prepare` checks the call's arguments; the session must be running by
    // then. A refusal of the outcome is thrown when what has changed is kept.
    using Preparing = std::function<std::unique_ptr<Operation>()>;
    void Operate(const CallInfo& call, const Preparing& prepare);

    // The last call of the session, for the journal alone.
    void Close(const CallInfo& call);

  private:
    void RequireRunning() const;
    // `take` keeps the refusal of an outcome and returns what has changed.
    using Taking = std::function<ChangeMade(CallOutcome)>;
    void OperateAttached(const CallInfo& call, const Preparing& prepare, const Taking& take);
    std::unique_ptr<AttachedFarm> Attach();

    std::mutex m_mutex;
    std::string m_server;
    uint64_t m_handle;
    Connection m_connection;
    CallRecorder m_recorder{m_connection};
    int64_t m_epoch = 0;  // that the session was opened in
    std::optional<ChangeNumber> m_nextNumber;
    std::unique_ptr<AttachedFarm> m_attached;  // null for a simulated farm
};

// The handle of this process's session with that number, which counts from 1. The process stands in the upper
// half, so that a journal can tell the sessions of all processes apart.
KrvSession SessionHandle(uint32_t number);

// Starts the service of a server without a session. The change is kept together with its number, if it has
// one.
void StartServer(const std::string& server, const CallInfo& call,
                 const std::optional<ChangeNumber>& number = std::nullopt);

}  // namespace embedded
