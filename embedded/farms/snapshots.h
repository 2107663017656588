#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/store/database.h"

namespace embedded {

// Copies of the farm of a server, as files beside it.

// The file of a snapshot. Refuses names that are empty or longer than kMaxServerName.
std::filesystem::path SnapshotPath(std::string_view server, std::string_view name);

// The names of the snapshots of a server, in their order.
std::vector<std::string> ListSnapshots(std::string_view server);

// Writes the farm as of one moment to a new file, while others may use and change the farm. False when
// something is there already: it stays.
bool CopyFarm(Database& farm, const std::filesystem::path& file);

// Puts the copy into the place of the server's farm. Sessions with the old farm are over. A farm that cannot
// be used is moved out of the way, to the path that is returned; empty otherwise. Refuses farms of real
// jukeboxes.
std::filesystem::path RestoreFarm(const std::string& server, const std::filesystem::path& copy);

// Removes the farm of a server, damaged or not. Refuses while another process uses it or real
// jukeboxes are attached to it, and a file that is no farm.
void RemoveFarm(const std::string& server);

}  // namespace embedded
