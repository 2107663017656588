#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "embedded/catalogue/read_ahead.h"
#include "embedded/catalogue/service_state.h"
#include "embedded/store/change_watch.h"
#include "embedded/store/database.h"

namespace embedded {

// What a look works with.
struct View {
    Database& database;
    ReadAhead& ahead;
    uint64_t number;  // what a connection shows under the same number is the same
};

// A connection to a farm and the view of it that looks share. The view stays open from look to look, which
// saves the locking of each, and is renewed as soon as anything was committed.
class Connection {
  public:
    explicit Connection(std::unique_ptr<Database> database);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() = default;

    // Opens the view or renews it, and returns its state.
    const ServiceState& Refresh() {
        if (IsViewOld()) {
            StartWaiting();
            OpenView();
        }
        return m_state;
    }

    // The same in the middle of a call, whose waiting time goes on.
    const ServiceState& RefreshAgain() {
        if (IsViewOld()) OpenView();
        return m_state;
    }

    // A call that may wait for others begins, or goes on after a pause.
    void StartWaiting() { m_database->StartWaiting(); }

    const ServiceState& GetState() const { return m_state; }

    // After Refresh.
    View GetView() { return {*m_database, m_ahead, m_viewNumber}; }

    // Runs a change as one transaction; GetState is the state that it finds. Waits for others as long as the
    // call's waiting time lasts.
    void Change(const std::function<void(Database&)>& change);

    const Database& GetDatabase() const { return *m_database; }

  private:
    bool IsViewOld() const { return !m_isViewOpen || (!m_database->IsFixed() && m_watch.HasChanged()); }
    void OpenView();
    void CloseView();

    std::unique_ptr<Database> m_database;
    ChangeWatch m_watch;
    ReadAhead m_ahead;
    ServiceState m_state;
    bool m_isViewOpen = false;
    uint64_t m_viewNumber = 0;  // of the view that was opened last
};

}  // namespace embedded
