#include "embedded/attached/jukebox/credentials.h"

#include <fstream>
#include <string>

namespace embedded::attached {
namespace {

std::string Trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r";
    const size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// When the file cannot be looked at, reading it will say why.
bool MayEverybodyUse(const std::filesystem::path& file) {
    namespace fs = std::filesystem;
    std::error_code failure;
    const fs::perms permissions = fs::status(file, failure).permissions();
    return !failure && (permissions & (fs::perms::others_read | fs::perms::others_write)) != fs::perms::none;
}

Error Failure(const std::string& text) {
    return {ErrorKind::NotPermitted, text, {}};
}

}  // namespace

Result<IscsiLogin> ReadCredentials(const std::filesystem::path& file) {
    IscsiLogin login;
    if (file.empty()) return login;
    if (MayEverybodyUse(file)) {
        return Failure("every user may read or change " + file.string() +
                       "; take that right away: chmod o-rw " + file.string());
    }
    std::ifstream in(file);
    if (!in) return Failure(file.string() + " cannot be read");
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
            return Failure(file.string() + ", line " + std::to_string(number) +
                           R"(: expected "user = NAME", "secret = TEXT" or "initiator = NAME")");
        }
        *target = std::move(value);
    }
    if (in.bad()) return Failure(file.string() + " cannot be read");
    if (login.user.empty() != login.secret.empty())
        return Failure(file.string() + " must hold a user and a secret");
    return login;
}

}  // namespace embedded::attached
