#pragma once

#include <cstdint>
#include <string>

#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

enum class Enabled { No, Yes };

// Each of these calls runs in the caller's transaction and returns what it changed, in words for the journal;
// empty when the item was in that state already.

std::string EnableJukebox(Database& database, const JukeboxKey& key, Enabled enabled);

// A disabled magazine counts as not present: its volumes go offline.
std::string EnableMagazine(Database& database, const MagazineKey& key, Enabled enabled);
std::string EnableDrive(Database& database, const DriveKey& key, Enabled enabled);
std::string EnableVolume(Database& database, uint32_t volume, Enabled enabled);

// Names have 1 to 51 bytes.
std::string RenameJukebox(Database& database, const JukeboxKey& key, const std::string& name);

// Sets the first directory name of the volume, 1 to 1023 bytes that no other volume has.
std::string SetDirectory(Database& database, uint32_t volume, const std::string& name);

}  // namespace embedded
