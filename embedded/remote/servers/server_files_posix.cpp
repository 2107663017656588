#include <cstdlib>

#include "embedded/remote/servers/server_files.h"

namespace embedded::remote {
namespace {

std::filesystem::path FolderFrom(const char* name) {
    const char* value = std::getenv(name);
    std::filesystem::path folder = value == nullptr ? "" : value;
    // A relative path would mean another folder in every working directory: not taken.
    return folder.is_absolute() ? folder : std::filesystem::path();
}

std::filesystem::path ConfigurationFolder() {
    std::filesystem::path folder = FolderFrom("XDG_CONFIG_HOME");
    if (!folder.empty()) return folder;
    folder = FolderFrom("HOME");
    return folder.empty() ? folder : folder / ".config";
}

}  // namespace

ServerFiles FindServerFiles() {
    const std::filesystem::path folder = ConfigurationFolder();
    return {folder.empty() ? folder : folder / "krvcmd" / "servers.toml", "/etc/krvcmd/servers.toml"};
}

}  // namespace embedded::remote
