#include "embedded/library/connection.h"

#include "embedded/store/rows.h"
#include "embedded/store/transaction.h"

namespace embedded {

Connection::Connection(std::unique_ptr<Database> database)
    : m_database(std::move(database)), m_watch(m_database->GetConnection()) {}

void Connection::ReadState() {
    Rows row(*m_database, Sql::ServerState);
    row.Next();
    m_state = {row.Flag(0), row.Integer(1), row.Integer(2), row.Integer(3)};
}

void Connection::OpenView() {
    CloseView();
    RollBackWhatIsLeft(*m_database);
    m_watch.Remember();
    Run(*m_database, Sql::BeginRead);
    m_isViewOpen = true;
    try {
        ReadState();
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
    if (sqlite3_get_autocommit(m_database->GetConnection()) == 0) Run(*m_database, Sql::Commit);
}

void Connection::Change(const std::function<void(Database&)>& change) {
    CloseView();
    InTransaction(*m_database, [&] {
        ReadState();
        change(*m_database);
    });
}

}  // namespace embedded
