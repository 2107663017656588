#include "embedded/store/database.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>
#include <thread>

#include "embedded/model/refusal.h"
#include "embedded/model/strings.h"
#include "embedded/platform/file_size_signal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

// No name of the standard library stands for it.
#ifdef EDQUOT
constexpr int kQuotaExceeded = EDQUOT;
#else
constexpr int kQuotaExceeded = -1;
#endif

std::string Reason(int systemError, const char* otherwise) {
    if (systemError == 0) return otherwise;
    return std::system_category().message(systemError);
}

// A full disk, a full share of it, or a file as large as this process may make it.
bool MeansNoRoom(int systemError) {
    const std::error_code code(systemError, std::system_category());
    return code == std::errc::no_space_on_device || code == std::errc::file_too_large ||
           systemError == kQuotaExceeded;
}

// The database takes paths as UTF-8 on every platform.
std::string Utf8(const std::u8string& text) {
    return {text.begin(), text.end()};
}

// The file as an address that says that nobody changes it, so that no lock and no log is looked for.
std::string FixedAddress(const std::filesystem::path& file) {
    std::string address = "file://";
    const std::string path = Utf8(std::filesystem::absolute(file).generic_u8string());
    if (!path.starts_with('/')) address += '/';
    for (const char character : path) {
        const bool hasMeaning = character == '%' || character == '?' || character == '#';
        address += hasMeaning ? "%" + HexDigits(character) : std::string(1, character);
    }
    return address + "?immutable=1";
}

}  // namespace

// The last connection puts the log of changes into the file.
void CloseConnection::operator()(sqlite3* connection) const {
    const FileSizeSignalGuard guard;
    sqlite3_close_v2(connection);
}

Database::Access Database::AccessTo(const std::filesystem::path& file) {
    if (MayChange(file)) return Access::Full;
    std::filesystem::path log = file;
    log += "-wal";
    std::error_code failure;
    const auto size = std::filesystem::file_size(log, failure);
    return failure || size == 0 ? Access::Fixed : Access::ReadOnly;
}

Database::Database(const std::filesystem::path& file, const std::filesystem::path& shownAs)
    : m_file(shownAs.empty() ? file : shownAs), m_access(AccessTo(file)) {
    StartWaiting();
    // An absolute path is never taken for an address with options, as "file:x?mode=ro" would be.
    const std::string address =
        IsFixed() ? FixedAddress(file) : Utf8(std::filesystem::absolute(file).u8string());
    const int access = m_access == Access::Full ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    sqlite3* connection = nullptr;
    const int result =
        sqlite3_open_v2(address.c_str(), &connection,
                        access | SQLITE_OPEN_NOMUTEX | (IsFixed() ? SQLITE_OPEN_URI : 0), nullptr);
    m_connection.reset(connection);
    if (connection == nullptr) throw std::bad_alloc();
    sqlite3_extended_result_codes(connection, 1);
    if (result != SQLITE_OK) Fail(result);
    // A farm has no triggers. One that somebody adds to the file must not run.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_busy_handler(connection, &WaitForOthers, this);
}

// Short waits at first, because a change takes a few milliseconds; different ones in each process,
// so that many of them do not ask in step.
int Database::WaitForOthers(void* database, int attempt) {
    auto* self = static_cast<Database*>(database);
    if (!self->MayStillWait()) {
        self->m_hasGivenUp = true;
        return 0;
    }
    const auto spread = static_cast<int64_t>(ProcessId() % 7);
    std::this_thread::sleep_for(
        std::chrono::microseconds(500 * std::min<int64_t>(attempt + 1, 20) + 100 * spread));
    return 1;
}

sqlite3_stmt* Database::Prepared(Sql sql) {
    StatementHandle& statement = m_statements[sql.GetText()];
    if (statement == nullptr) {
        sqlite3_stmt* prepared = nullptr;
        const int result = sqlite3_prepare_v3(m_connection.get(), sql.GetText(), -1,
                                              SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
        if (result != SQLITE_OK) Fail(result);
        statement.reset(prepared);
    }
    return statement.get();
}

void Database::Execute(const std::string& script) {
    const FileSizeSignalGuard guard;
    const int result = sqlite3_exec(m_connection.get(), script.c_str(), nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) Fail(result);
}

void Database::Fail(int result) const {
    const int lastError = errno;
    const std::string file = PathText(m_file);
    int systemError = sqlite3_system_errno(m_connection.get());
    // A commit or a mapping of memory that fails does not leave the system's own reason with the connection.
    if (systemError == 0 && (result == SQLITE_IOERR_WRITE || result == SQLITE_IOERR_SHMMAP))
        systemError = lastError;
    const char* text = sqlite3_errstr(result);
    const int kind = result & 0xFF;
    const bool fromSystem = kind == SQLITE_IOERR || kind == SQLITE_CANTOPEN;
    if (fromSystem && systemError == ENOMEM) throw std::bad_alloc();
    if (fromSystem && MeansNoRoom(systemError))
        throw Refuse(Code::DiskFull, {file, Reason(systemError, text)});
    if (kind == SQLITE_FULL) {
        throw Refuse(Code::DiskFull, {file, std::make_error_code(std::errc::no_space_on_device).message()});
    }
    switch (kind) {
        case SQLITE_NOMEM:
            throw std::bad_alloc();
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_PROTOCOL:
            throw Refuse(Code::FarmLocked, {file});
        case SQLITE_READONLY:
            if (IsReadOnly()) text = "the file or its folder is read-only";
            throw Refuse(Code::FarmReadOnly, {file, Reason(systemError, text)});
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            throw Refuse(Code::CannotOpenFile, {file, Reason(systemError, text)});
        case SQLITE_NOTADB:
            throw Refuse(Code::NotAFarm, {file});
        default:
            throw Refuse(Code::FarmDamaged, {file, sqlite3_errmsg(m_connection.get())});
    }
}

void RollBackOpenTransaction(Database& database) {
    if (sqlite3_get_autocommit(database.GetConnection()) != 0) return;
    sqlite3_exec(database.GetConnection(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void InTransaction(Database& database, const std::function<void()>& work) {
    const FileSizeSignalGuard guard;
    RollBackOpenTransaction(database);
    Run(database, "BEGIN IMMEDIATE");
    try {
        work();
        Run(database, "COMMIT");
    } catch (...) {
        RollBackOpenTransaction(database);
        throw;
    }
}

}  // namespace embedded
