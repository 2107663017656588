#include "embedded/store/transaction.h"

#include "embedded/store/rows.h"

namespace embedded {

void RollBackWhatIsLeft(Database& database) {
    if (sqlite3_get_autocommit(database.GetConnection()) != 0) return;
    sqlite3_exec(database.GetConnection(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void InTransaction(Database& database, const std::function<void()>& work) {
    RollBackWhatIsLeft(database);
    Run(database, Sql::BeginChange);
    try {
        work();
        Run(database, Sql::Commit);
    } catch (...) {
        RollBackWhatIsLeft(database);
        throw;
    }
}

}  // namespace embedded
