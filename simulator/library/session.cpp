#include "simulator/library/session.h"

#include <filesystem>

#include "simulator/farms/demonstration.h"
#include "simulator/store/farm_file.h"
#include "simulator/store/rows.h"
#include "simulator/world/refusal.h"
#include "simulator/world/switching.h"

namespace krvsim {
namespace {

std::unique_ptr<Database> OpenServer(const std::string& server) {
    if (!IsDemonstrationServer(server)) return OpenFarm(server, nullptr);
    return OpenFarm(server, [&](Database& database) { FillDemonstrationFarm(database, server); });
}

}  // namespace

Session::Session(std::string server)
    : m_server(std::move(server)), m_database(OpenServer(m_server)), m_watch(m_database->GetConnection()) {
    Rows state(*m_database, Sql::ServerState);
    state.Next();
    if (!state.Flag(0)) throw Refuse(Code::ServiceStopped, {m_server});
    m_epoch = state.Integer(1);
    // The file's time tells when the server was last used; looks leave no other trace.
    std::error_code ignored;
    std::filesystem::last_write_time(m_database->GetFile(), std::filesystem::file_time_type::clock::now(),
                                     ignored);
}

void Session::RequireRunning() {
    Rows state(*m_database, Sql::ServerState);
    state.Next();
    if (!state.Flag(0)) throw Refuse(Code::ServiceStopped, {m_server});
    if (state.Integer(1) != m_epoch) throw Refuse(Code::SessionEnded, {m_server});
}

void Session::EndView() {
    if (!m_isViewOpen) return;
    m_isViewOpen = false;
    m_ahead.Forget();
    Run(*m_database, Sql::Commit);
}

void Session::PrepareRead() {
    if (m_isViewOpen && !m_watch.HasChanged()) return;
    m_database->StartWaiting();
    EndView();
    m_watch.Remember();
    Run(*m_database, Sql::BeginRead);
    m_isViewOpen = true;
    try {
        RequireRunning();
    } catch (...) {
        // The next call looks again: the service may be running by then.
        UndoChange();
        throw;
    }
}

void Session::BeginChange() {
    m_database->StartWaiting();
    EndView();
    Run(*m_database, Sql::BeginChange);
    try {
        RequireRunning();
    } catch (...) {
        UndoChange();
        throw;
    }
}

void Session::CommitChange() {
    Run(*m_database, Sql::Commit);
}

void Session::UndoChange() {
    m_isViewOpen = false;
    m_ahead.Forget();
    if (sqlite3_get_autocommit(m_database->GetConnection()) == 0) {
        sqlite3_exec(m_database->GetConnection(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void StartServer(const std::string& server) {
    const std::unique_ptr<Database> database = OpenServer(server);
    Run(*database, Sql::BeginChange);
    StartService(*database);
    Run(*database, Sql::Commit);
}

}  // namespace krvsim
