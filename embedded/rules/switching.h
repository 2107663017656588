// Switching items on and off, names, and the service itself. The caller has opened a transaction.
// Each returns what it changed, in words for the journal; empty when the item was so already.
#pragma once

#include <cstdint>
#include <string>

#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

enum class Switch { Off, On };

std::string SwitchJukebox(Database& database, const JukeboxKey& key, Switch to);

// A magazine that is switched off is as one that is not present: its volumes go offline.
std::string SwitchMagazine(Database& database, const MagazineKey& key, Switch to);
std::string SwitchDrive(Database& database, const DriveKey& key, Switch to);
std::string SwitchVolume(Database& database, uint32_t volume, Switch to);

std::string RenameJukebox(Database& database, const JukeboxKey& key, const std::string& name);

// Sets the first directory name of the volume.
std::string SetDirectory(Database& database, uint32_t volume, const std::string& name);

// The service itself. Sessions that were opened before a start are over.
std::string StartService(Database& database);
std::string StopService(Database& database);
std::string RestartService(Database& database);

}  // namespace embedded
