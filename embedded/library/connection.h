// A connection to a farm and the view of it that looks share. The view stays open from look to look,
// which saves the locking of each, and is renewed as soon as anything was committed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "embedded/rules/read_ahead.h"
#include "embedded/store/change_watch.h"
#include "embedded/store/database.h"

namespace embedded {

// What a look works with.
struct View {
    Database& database;
    ReadAhead& ahead;
};

// The row that every view of a farm begins with.
struct ServerState {
    bool isRunning = false;
    int64_t epoch = 0;         // sessions that were opened in another one are over
    int64_t journalLimit = 0;  // 0 = there is no journal
    int64_t faultCount = 0;
};

class Connection {
  public:
    explicit Connection(std::unique_ptr<Database> database);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() = default;

    // Opens the view or renews it; the state is the one of that view.
    const ServerState& Refresh() {
        if (IsViewOld()) {
            StartWaiting();
            OpenView();
        }
        return m_state;
    }

    // The same in the middle of a call, whose patience goes on.
    const ServerState& RefreshAgain() {
        if (IsViewOld()) OpenView();
        return m_state;
    }

    // A call that may wait for others begins, or goes on after a pause.
    void StartWaiting() { m_database->StartWaiting(); }

    const ServerState& GetState() const { return m_state; }

    // After Refresh.
    View GetView() { return {*m_database, m_ahead}; }

    // Runs a change as one transaction; the state is the one that it finds. Waits for others as long as the
    // patience of the call lasts.
    void Change(const std::function<void(Database&)>& change);

    const Database& GetDatabase() const { return *m_database; }

  private:
    bool IsViewOld() const { return !m_isViewOpen || (!m_database->IsFixed() && m_watch.HasChanged()); }
    void OpenView();
    void CloseView();
    void ReadState();

    std::unique_ptr<Database> m_database;
    ChangeWatch m_watch;
    ReadAhead m_ahead;
    ServerState m_state;
    bool m_isViewOpen = false;
};

}  // namespace embedded
