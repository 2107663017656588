#pragma once

#include <filesystem>

#include "embedded/attached/transport/iscsi_address.h"

namespace embedded::tools {

// The user and the secret in a file, as attached::ReadCredentials reads it. Throws a ToolFailure.
attached::IscsiLogin ReadCredentials(const std::filesystem::path& file);

}  // namespace embedded::tools
