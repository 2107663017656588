#include "tools/krvadm/credentials.h"

#include <fstream>
#include <string>

#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

std::string Trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r";
    const size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

void CheckPermissions(const std::filesystem::path& file) {
    namespace fs = std::filesystem;
    std::error_code failure;
    const fs::perms permissions = fs::status(file, failure).permissions();
    if (failure) return;  // reading it will say why
    if ((permissions & (fs::perms::others_read | fs::perms::others_write)) != fs::perms::none) {
        throw ToolFailure("every user may read or change " + file.string() +
                          "; take that right away: chmod o-rw " + file.string());
    }
}

}  // namespace

attached::IscsiLogin ReadCredentials(const std::filesystem::path& file) {
    attached::IscsiLogin login;
    if (file.empty()) return login;
    CheckPermissions(file);
    std::ifstream in(file);
    if (!in) throw ToolFailure(file.string() + " cannot be read");
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        line = Trimmed(line);
        if (line.empty() || line.starts_with('#')) continue;
        const size_t equals = line.find('=');
        const std::string key = Trimmed(line.substr(0, equals));
        std::string value = equals == std::string::npos ? "" : Trimmed(line.substr(equals + 1));
        std::string* const target = key == "user"        ? &login.user
                                    : key == "secret"    ? &login.secret
                                    : key == "initiator" ? &login.initiator
                                                         : nullptr;
        if (target == nullptr || value.empty()) {
            throw ToolFailure(file.string() + ", line " + std::to_string(number) +
                              R"(: expected "user = NAME", "secret = TEXT" or "initiator = NAME")");
        }
        *target = std::move(value);
    }
    if (in.bad()) throw ToolFailure(file.string() + " cannot be read");
    if (login.user.empty() != login.secret.empty())
        throw ToolFailure(file.string() + " must hold a user and a secret");
    return login;
}

}  // namespace embedded::tools
