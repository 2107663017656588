#include "tools/krvadm/credentials.h"

#include "embedded/attached/jukebox/credentials.h"
#include "tools/common/streams.h"

namespace embedded::tools {

attached::IscsiLogin ReadCredentials(const std::filesystem::path& file) {
    auto login = attached::ReadCredentials(file);
    if (!login) throw ToolFailure(login.GetError().text);
    return std::move(*login);
}

}  // namespace embedded::tools
