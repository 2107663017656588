#include "tests/unit/embedded/platform/farm_probe.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

namespace embedded_test {
namespace {

struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};
using Connection = std::unique_ptr<sqlite3, Close>;

Connection Open(const std::filesystem::path& farm) {
    sqlite3* connection = nullptr;
    const int result = sqlite3_open(farm.string().c_str(), &connection);
    Connection owner(connection);
    if (result != SQLITE_OK) throw std::runtime_error("no database");
    sqlite3_busy_timeout(connection, 5000);
    return owner;
}

int KeepText(void* target, int /*columns*/, char** values, char** /*names*/) {
    if (values[0] != nullptr) *static_cast<std::string*>(target) = values[0];
    return 0;
}

}  // namespace

std::string ReadText(const std::filesystem::path& farm, const std::string& statement) {
    const Connection connection = Open(farm);
    std::string text;
    if (sqlite3_exec(connection.get(), statement.c_str(), &KeepText, &text, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
    }
    return text;
}

int64_t ReadNumber(const std::filesystem::path& farm, const std::string& statement) {
    return std::stoll(ReadText(farm, statement));
}

FarmHold::FarmHold(const std::filesystem::path& farm) : m_connection(Open(farm).release()) {
    if (sqlite3_exec(m_connection, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(m_connection));
    }
}

FarmHold::~FarmHold() {
    sqlite3_close(m_connection);
}

void Hold(const std::filesystem::path& farm, const std::string& script,
          const std::function<void()>& meanwhile) {
    const Connection connection = Open(farm);
    if (sqlite3_exec(connection.get(), script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
    }
    meanwhile();
}

void ChangeFarm(const std::filesystem::path& farm, const std::string& script) {
    (void)ReadText(farm, script);
}

}  // namespace embedded_test
