#include "simulator/store/transaction.h"

#include "simulator/store/rows.h"

namespace krvsim {

void InTransaction(Database& database, const std::function<void()>& work) {
    Run(database, Sql::BeginChange);
    try {
        work();
        Run(database, Sql::Commit);
    } catch (...) {
        // Some failures have ended the transaction already.
        if (sqlite3_get_autocommit(database.GetConnection()) == 0) {
            sqlite3_exec(database.GetConnection(), "ROLLBACK", nullptr, nullptr, nullptr);
        }
        throw;
    }
}

}  // namespace krvsim
