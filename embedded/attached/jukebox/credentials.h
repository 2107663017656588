#pragma once

#include <filesystem>

#include "embedded/attached/transport/iscsi_address.h"

namespace embedded::attached {

// Lines "user = NAME", "secret = TEXT" and, when the target knows this host under a certain name, "initiator
// = NAME"; empty ones and those that begin with "#" count for nothing. An empty path is a login without a
// user. An error, which never shows the secret, when the file cannot be read, says something else, or when
// any user may read it.
Result<IscsiLogin> ReadCredentials(const std::filesystem::path& file);

}  // namespace embedded::attached
