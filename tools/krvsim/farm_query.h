// Statements that a command of krvsim runs on a farm, beyond those of the library.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "embedded/store/database.h"

namespace embedded::tools {

// A value that is put into a statement.
using Value = std::variant<std::nullptr_t, int64_t, double, std::string>;

Value OptionalValue(const std::optional<int64_t>& number);

// A row of a statement's result.
class Row {
  public:
    explicit Row(sqlite3_stmt* statement) : m_statement(statement) {}

    bool IsNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    int64_t Integer(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::optional<int64_t> Optional(int column) const;
    double Real(int column) const { return sqlite3_column_double(m_statement, column); }
    std::string Text(int column) const;

  private:
    sqlite3_stmt* m_statement;
};

// Runs a statement with these values and hands over each row.
void ForEachRow(Database& database, const std::string& statement, const std::vector<Value>& values,
                const std::function<void(const Row&)>& read);

// Runs a statement for its effect.
void Execute(Database& database, const std::string& statement, const std::vector<Value>& values);

// The first column of the first row; nothing without a row, or where it is null.
std::optional<int64_t> FindNumber(Database& database, const std::string& statement,
                                  const std::vector<Value>& values);

// The jukebox that a user names, by its name or by "@" and its ID; throws a ToolFailure when there is none.
int32_t FindJukebox(Database& database, const std::string& word);

}  // namespace embedded::tools
