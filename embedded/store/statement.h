#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "embedded/store/database.h"

namespace embedded {

template <typename Type>
inline constexpr bool kIsOptional = false;
template <typename Type>
inline constexpr bool kIsOptional<std::optional<Type>> = true;

// One run of a statement: values in, rows out. Values are bound in the order of ?1, ?2, ...; the columns of a
// row are read in the order of the SELECT. The statement stays prepared with its connection; two runs of the
// same statement must not overlap. Every failure is thrown as a Refusal.
class Statement {
  public:
    template <typename... Values>
    Statement(Database& database, Sql sql, const Values&... values)
        : m_database(database), m_statement(database.Prepared(sql)) {
        int position = 0;
        (Bind(++position, values), ...);
    }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement() { sqlite3_reset(m_statement); }

    // The next row, read from its first column on; false after the last one.
    bool Next();

    // The next column: a number, an enumeration, a bool, a text, or std::optional of one of them for a column
    // that may be null. A std::string_view is valid until the next row.
    template <typename Type>
    Type Read() {
        if constexpr (kIsOptional<Type>) {
            if (IsNull()) return std::nullopt;
            return Read<typename Type::value_type>();
        } else if constexpr (std::is_same_v<Type, std::string_view>) {
            return ReadText();
        } else if constexpr (std::is_same_v<Type, std::string>) {
            return std::string(ReadText());
        } else if constexpr (std::is_floating_point_v<Type>) {
            return sqlite3_column_double(m_statement, m_column++);
        } else {
            static_assert(std::is_integral_v<Type> || std::is_enum_v<Type>);
            return static_cast<Type>(sqlite3_column_int64(m_statement, m_column++));
        }
    }

    // The next columns, for a structured binding.
    template <typename First, typename Second, typename... More>
    std::tuple<First, Second, More...> Read() {
        return std::tuple<First, Second, More...>{Read<First>(), Read<Second>(), Read<More>()...};
    }

    // The next column into a field.
    template <typename Type>
    Statement& operator>>(Type& field) {
        field = Read<Type>();
        return *this;
    }

  private:
    template <typename Value>
    void Bind(int position, const Value& value) {
        if constexpr (kIsOptional<Value>) {
            if (value.has_value()) {
                Bind(position, *value);
            } else {
                Check(sqlite3_bind_null(m_statement, position));
            }
        } else if constexpr (std::is_convertible_v<Value, std::string_view>) {
            BindText(position, value);
        } else if constexpr (std::is_floating_point_v<Value>) {
            Check(sqlite3_bind_double(m_statement, position, value));
        } else {
            static_assert(std::is_integral_v<Value> || std::is_enum_v<Value>);
            Check(sqlite3_bind_int64(m_statement, position, static_cast<int64_t>(value)));
        }
    }
    void BindText(int position, std::string_view text);
    void Check(int result) {
        if (result != SQLITE_OK) m_database.Fail(result);
    }

    // Passes a column that is null.
    bool IsNull();
    std::string_view ReadText();

    Database& m_database;
    sqlite3_stmt* m_statement;
    int m_column = 0;
};

// Runs a statement for its effect; rows that it yields are passed over.
template <typename... Values>
void Run(Database& database, Sql sql, const Values&... values) {
    Statement statement(database, sql, values...);
    while (statement.Next()) {
    }
}

// The first column of the first row; nothing without a row, or where it is null.
template <typename Type, typename... Values>
std::optional<Type> FindValue(Database& database, Sql sql, const Values&... values) {
    Statement statement(database, sql, values...);
    if (!statement.Next()) return std::nullopt;
    return statement.Read<std::optional<Type>>();
}

// The first column of all rows.
template <typename Type, typename... Values>
std::vector<Type> FindValues(Database& database, Sql sql, const Values&... values) {
    std::vector<Type> found;
    Statement statement(database, sql, values...);
    while (statement.Next())
        found.push_back(statement.Read<Type>());
    return found;
}

}  // namespace embedded
