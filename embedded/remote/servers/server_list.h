#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/remote/servers/place.h"

namespace embedded::remote {

// The servers on other machines that were made known, in files of
//
//   [[server]]
//   name = "archive"
//   place = "ssh://operator@archive.example/vault"

struct KnownServer {
    std::string name;
    std::string placeText;
    Place place;
    std::filesystem::path file;  // that names it
};

// The server of that name: the user's file counts before the system's. Nothing when none is known. Refuses a
// file that is invalid.
std::optional<KnownServer> FindKnownServer(std::string_view name);

// All of them, the user's first; one that the user's file hides is left out.
std::vector<KnownServer> ListKnownServers();

// Whether a server may have the name: 1 to 64 bytes without control characters. In a file it is UTF-8.
bool IsServerName(std::string_view name);

// Adds a server to the user's file, which is made when it is missing. The name and the place are valid.
void AddKnownServer(const std::string& name, const std::string& placeText);

// Removes a server from the user's file, whose other lines stay. False when the file does not name it.
bool RemoveKnownServer(std::string_view name);

}  // namespace embedded::remote
