#include <cstdlib>

#include "embedded/remote/servers/server_files.h"

namespace embedded::remote {
namespace {

std::filesystem::path FileBelow(const wchar_t* name) {
    const wchar_t* value = _wgetenv(name);
    if (value == nullptr) return {};
    return std::filesystem::path(value) / "krvcmd" / "servers.toml";
}

}  // namespace

ServerFiles FindServerFiles() {
    return {FileBelow(L"APPDATA"), FileBelow(L"PROGRAMDATA")};
}

}  // namespace embedded::remote
