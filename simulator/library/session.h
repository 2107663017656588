// One session of a caller with a server's service: a connection to the farm, and the view of it
// that looks share.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "simulator/store/change_watch.h"
#include "simulator/store/database.h"
#include "simulator/world/read_ahead.h"

namespace krvsim {

// What a look works with.
struct View {
    Database& database;
    ReadAhead& ahead;
};

class Session {
  public:
    // Opens the session; refuses unknown servers and stopped ones. The demonstration servers get
    // their farm here when they have none.
    explicit Session(std::string server);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() = default;

    // Runs a look: it sees the farm as of now or of the last commit, and nothing of a change that
    // another process has begun.
    template <typename Look>
    void Read(const Look& look) {
        const std::scoped_lock lock(m_mutex);
        PrepareRead();
        look(View{*m_database, m_ahead});
    }

    // Runs a change as one transaction: all of it is kept, or, when it throws, nothing.
    template <typename Change>
    void Write(const Change& change) {
        const std::scoped_lock lock(m_mutex);
        BeginChange();
        try {
            change(*m_database);
            CommitChange();
        } catch (...) {
            UndoChange();
            throw;
        }
    }

  private:
    void PrepareRead();
    void BeginChange();
    void CommitChange();
    void UndoChange();
    void EndView();
    void RequireRunning();

    std::mutex m_mutex;
    std::string m_server;
    std::unique_ptr<Database> m_database;
    ChangeWatch m_watch;
    ReadAhead m_ahead;
    int64_t m_epoch = 0;
    bool m_isViewOpen = false;
};

// Starts the service of a server without a session.
void StartServer(const std::string& server);

}  // namespace krvsim
