// One run of a cached statement: values in, rows out, ready for the next run when it goes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

#include "embedded/store/database.h"

namespace embedded {

class Rows {
  public:
    template <typename... Values>
    Rows(Database& database, Sql sql, const Values&... values)
        : m_database(database), m_statement(database.Prepared(sql)) {
        int position = 0;
        (Bind(++position, values), ...);
    }
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    ~Rows() { sqlite3_reset(m_statement); }

    // The next row; false after the last one.
    bool Next() {
        const int result = sqlite3_step(m_statement);
        if (result == SQLITE_ROW) return true;
        if (result != SQLITE_DONE) m_database.Fail(result);
        return false;
    }

    bool IsNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    int64_t Integer(int column) const { return sqlite3_column_int64(m_statement, column); }
    int32_t Number(int column) const { return static_cast<int32_t>(Integer(column)); }
    uint32_t Unsigned(int column) const { return static_cast<uint32_t>(Integer(column)); }
    double Real(int column) const { return sqlite3_column_double(m_statement, column); }
    bool Flag(int column) const { return Integer(column) != 0; }

    // Valid until the next row.
    std::string_view Text(int column) const {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
        if (bytes == nullptr) return {};
        return {bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))};
    }

  private:
    template <typename Value>
    void Bind(int position, const Value& value) {
        int result = SQLITE_OK;
        if constexpr (std::is_convertible_v<Value, std::string_view>) {
            const std::string_view text = value;
            result = sqlite3_bind_text64(m_statement, position, text.data() == nullptr ? "" : text.data(),
                                         text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        } else if constexpr (std::is_same_v<Value, std::optional<int64_t>>) {
            result = value.has_value() ? sqlite3_bind_int64(m_statement, position, value.value_or(0))
                                       : sqlite3_bind_null(m_statement, position);
        } else {
            static_assert(std::is_integral_v<Value> || std::is_enum_v<Value>);
            result = sqlite3_bind_int64(m_statement, position, static_cast<int64_t>(value));
        }
        if (result != SQLITE_OK) m_database.Fail(result);
    }

    Database& m_database;
    sqlite3_stmt* m_statement;
};

// Runs a statement for its effect; rows that it yields are passed over.
template <typename... Values>
void Run(Database& database, Sql sql, const Values&... values) {
    Rows rows(database, sql, values...);
    while (rows.Next()) {
    }
}

}  // namespace embedded
