#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace embedded {

// The last connection to a farm puts its log of changes into the farm.
struct CloseConnection {
    void operator()(sqlite3* connection) const;
};
struct FinishStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinishStatement>;

// The text of a statement. Only a literal can be one: a connection finds what it has prepared by its address.
class Sql {
  public:
    template <size_t Size>
    consteval Sql(const char (&text)[Size]) : m_text(text) {}

    const char* GetText() const { return m_text; }

  private:
    const char* m_text;
};

// One connection to a farm's database: prepared statements, waiting for other processes, and the translation
// of the database's failures into the service's own codes. Every failure is thrown as a Refusal.
class Database {
  public:
    // How long a call waits for other processes, all its waits together.
    static constexpr std::chrono::milliseconds kPatience{9500};

    // Opens an existing file, without reading anything from it yet. A file that this process may not change
    // is opened read-only. Failures name the file `shownAs`, where given.
    explicit Database(const std::filesystem::path& file, const std::filesystem::path& shownAs = {});
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database() = default;

    // Starts the waiting time of a new call.
    void StartWaiting() {
        m_deadline = std::chrono::steady_clock::now() + kPatience;
        m_hasGivenUp = false;
    }
    bool MayStillWait() const { return std::chrono::steady_clock::now() < m_deadline; }
    // Whether the call has waited for others in vain.
    bool HasGivenUp() const { return m_hasGivenUp; }

    bool IsReadOnly() const { return m_access != Access::Full; }
    // Whether nobody changes the file while it is open.
    bool IsFixed() const { return m_access == Access::Fixed; }

    // The statement, prepared on its first use and kept. Statement (statement.h) is what runs it.
    sqlite3_stmt* Prepared(Sql sql);

    // Runs statements that yield no rows of interest.
    void Execute(const std::string& script);

    // Turns a failure code of the database into the service's refusal.
    [[noreturn]] void Fail(int result) const;

    sqlite3* GetConnection() const { return m_connection.get(); }
    const std::filesystem::path& GetFile() const { return m_file; }

  private:
    // Fixed: read-only, without a log of changes beside the file, and none can be made.
    enum class Access { Full, ReadOnly, Fixed };

    static Access AccessTo(const std::filesystem::path& file);
    static int WaitForOthers(void* database, int attempt);

    std::filesystem::path m_file;
    Access m_access;
    std::unique_ptr<sqlite3, CloseConnection> m_connection;
    std::unordered_map<const char*, StatementHandle> m_statements;
    std::chrono::steady_clock::time_point m_deadline;
    bool m_hasGivenUp = false;
};

// Ends a transaction that is still open: some failures leave one, others have ended it already. Without
// memory even this fails; then the next call ends it.
void RollBackOpenTransaction(Database& database);

// Begins a transaction that no other process can write beside, runs the work and commits; when the work or
// the commit throws, everything is undone. Waits for other writers.
void InTransaction(Database& database, const std::function<void()>& work);

}  // namespace embedded
