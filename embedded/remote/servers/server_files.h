#pragma once

#include <filesystem>

namespace embedded::remote {

// Where servers on other machines are made known. A path is empty when the environment names no folder.
struct ServerFiles {
    std::filesystem::path ofUser;    // $XDG_CONFIG_HOME/krvcmd/servers.toml; on Windows below %APPDATA%
    std::filesystem::path ofSystem;  // /etc/krvcmd/servers.toml; on Windows below %PROGRAMDATA%
};

ServerFiles FindServerFiles();

}  // namespace embedded::remote
