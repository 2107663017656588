#include "embedded/sessions/connection.h"

#include "embedded/platform/file_size_signal.h"
#include "embedded/store/statement.h"

namespace embedded {

Connection::Connection(std::unique_ptr<Database> database)
    : m_database(std::move(database)), m_watch(m_database->GetConnection()) {}

void Connection::OpenView() {
    // The first view makes the index of the log of changes, a file.
    const FileSizeSignalGuard guard;
    CloseView();
    RollBackOpenTransaction(*m_database);
    m_watch.Remember();
    Run(*m_database, "BEGIN");
    m_isViewOpen = true;
    ++m_viewNumber;
    try {
        m_state = ReadServiceState(*m_database);
    } catch (...) {
        CloseView();
        throw;
    }
}

void Connection::CloseView() {
    if (!m_isViewOpen) return;
    m_isViewOpen = false;
    m_ahead.Forget();
    // Some failures have ended the transaction already.
    if (sqlite3_get_autocommit(m_database->GetConnection()) == 0) Run(*m_database, "COMMIT");
}

void Connection::Change(const std::function<void(Database&)>& change) {
    CloseView();
    InTransaction(*m_database, [&] {
        m_state = ReadServiceState(*m_database);
        change(*m_database);
    });
}

}  // namespace embedded
