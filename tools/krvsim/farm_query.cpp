#include "tools/krvsim/farm_query.h"

#include <charconv>

#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

void Bind(sqlite3_stmt* statement, int position, const Value& value) {
    if (const auto* number = std::get_if<int64_t>(&value)) {
        sqlite3_bind_int64(statement, position, *number);
    } else if (const auto* real = std::get_if<double>(&value)) {
        sqlite3_bind_double(statement, position, *real);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        sqlite3_bind_text64(statement, position, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else {
        sqlite3_bind_null(statement, position);
    }
}

}  // namespace

Value OptionalValue(const std::optional<int64_t>& number) {
    if (!number.has_value()) return nullptr;
    return *number;
}

std::optional<int64_t> Row::Optional(int column) const {
    return IsNull(column) ? std::nullopt : std::optional<int64_t>(Integer(column));
}

std::string Row::Text(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))};
}

void ForEachRow(Database& database, const std::string& statement, const std::vector<Value>& values,
                const std::function<void(const Row&)>& read) {
    sqlite3_stmt* raw = nullptr;
    const int outcome = sqlite3_prepare_v2(database.GetConnection(), statement.c_str(), -1, &raw, nullptr);
    if (outcome != SQLITE_OK) database.Fail(outcome);
    const StatementHandle prepared(raw);
    int position = 0;
    for (const Value& value : values)
        Bind(prepared.get(), ++position, value);
    while (true) {
        const int result = sqlite3_step(prepared.get());
        if (result == SQLITE_DONE) return;
        if (result != SQLITE_ROW) database.Fail(result);
        read(Row(prepared.get()));
    }
}

void Execute(Database& database, const std::string& statement, const std::vector<Value>& values) {
    ForEachRow(database, statement, values, [](const Row&) {});
}

std::optional<int64_t> FindNumber(Database& database, const std::string& statement,
                                  const std::vector<Value>& values) {
    std::optional<int64_t> number;
    bool isFirst = true;
    ForEachRow(database, statement, values, [&](const Row& row) {
        if (isFirst) number = row.Optional(0);
        isFirst = false;
    });
    return number;
}

int32_t FindJukebox(Database& database, const std::string& word) {
    std::optional<int64_t> found;
    if (word.starts_with('@')) {
        int32_t id = 0;
        const char* end = word.data() + word.size();
        const auto result = std::from_chars(word.data() + 1, end, id);
        if (result.ec == std::errc() && result.ptr == end) {
            found = FindNumber(database, "SELECT id FROM jukebox WHERE id = ?1", {int64_t{id}});
        }
    } else {
        found = FindNumber(database, "SELECT id FROM jukebox WHERE name = ?1 ORDER BY id", {word});
    }
    if (!found.has_value()) {
        const bool isNumber = !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
        throw ToolFailure("there is no jukebox " + word +
                          (isNumber ? " (an ID is written @" + word + ")" : ""));
    }
    return static_cast<int32_t>(*found);
}

}  // namespace embedded::tools
