#include "embedded/store/change_number.h"

#include <chrono>
#include <optional>

#include "embedded/model/refusal.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

bool HasTable(Database& database) {
    constexpr Sql kTable =
        R"sql(SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'change_number')sql";
    return FindValue<int64_t>(database, kTable).has_value();
}

// Made when the first number comes: most farms never have one. A release that does not know the table passes
// it over. made: 0 = settled before it was made; time: seconds.
void RequireTable(Database& database) {
    if (HasTable(database)) return;
    database.Execute(R"sql(
        CREATE TABLE change_number (
          client TEXT NOT NULL,
          number INTEGER NOT NULL,
          made INTEGER NOT NULL CHECK (made IN (0, 1)),
          time INTEGER NOT NULL,
          PRIMARY KEY (client, number)
        ) STRICT, WITHOUT ROWID;
        CREATE INDEX change_number_time ON change_number (time);
    )sql");
}

std::optional<bool> Find(Database& database, const ChangeNumber& number) {
    return FindValue<bool>(database,
                           R"sql(SELECT made FROM change_number WHERE client = ?1 AND number = ?2)sql",
                           number.client, number.number);
}

// Nobody asks for a change that is older than a day.
void Insert(Database& database, const ChangeNumber& number, bool isMade) {
    using std::chrono::system_clock;
    const int64_t now =
        std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch()).count();
    constexpr int64_t kDay = 86'400;  // seconds
    Run(database, R"sql(DELETE FROM change_number WHERE time < ?1)sql", now - kDay);
    Run(database, R"sql(INSERT INTO change_number (client, number, made, time) VALUES (?1, ?2, ?3, ?4))sql",
        number.client, number.number, isMade, now);
}

}  // namespace

void RequireNewNumber(Database& database, const ChangeNumber& number) {
    if (HasTable(database) && Find(database, number).has_value())
        throw Refuse(Code::InvalidCall, {"a change", "its number is used or settled already"});
}

void KeepChangeNumber(Database& database, const ChangeNumber& number) {
    RequireTable(database);
    RequireNewNumber(database, number);
    Insert(database, number, true);
}

bool SettleChange(Database& database, const ChangeNumber& number) {
    bool isMade = false;
    InTransaction(database, [&] {
        RequireTable(database);
        const std::optional<bool> known = Find(database, number);
        isMade = known.value_or(false);
        if (!known.has_value()) Insert(database, number, false);
    });
    return isMade;
}

}  // namespace embedded
