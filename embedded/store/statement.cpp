#include "embedded/store/statement.h"

namespace embedded {

bool Statement::Next() {
    m_column = 0;
    const int result = sqlite3_step(m_statement);
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) m_database.Fail(result);
    return false;
}

// A null pointer would bind null instead of an empty text.
void Statement::BindText(int position, std::string_view text) {
    const char* bytes = text.data() == nullptr ? "" : text.data();
    Check(sqlite3_bind_text64(m_statement, position, bytes, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool Statement::IsNull() {
    if (sqlite3_column_type(m_statement, m_column) != SQLITE_NULL) return false;
    ++m_column;
    return true;
}

std::string_view Statement::ReadText() {
    const int column = m_column++;
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))};
}

}  // namespace embedded
