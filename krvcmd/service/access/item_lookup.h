#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {

// One item each, asked for afresh. Jukeboxes and volumes are named by their IDs, everything else by its key.
// A record is preset before the call; on a service error it holds what the library left in it.

Status GetJukebox(int32_t jukeboxId, JukeboxInfo& jukebox);
Status GetMagazineInfo(const MagazineKey& key, MagazineRecord& record);
Status GetDriveInfo(const DriveKey& key, DriveRecord& record);
Status GetSlotInfo(const SlotKey& key, SlotRecord& record);
Status GetSideInfo(const SideKey& key, SideRecord& record);

// The volume's record and its aspects.
Status GetVolume(int32_t volumeId, VolumeInfo& volume);

// Where the volume is. A volume without a location is no error.
Status GetVolumeLocations(int32_t volumeId, std::vector<SideKey>& locations);

// As GetVolumeLocations, but only one location is asked for, however many there are.
Status GetFirstVolumeLocation(int32_t volumeId, std::optional<SideKey>& location);

// Asks for the jukebox only to learn whether the library knows it.
Status CheckJukebox(int32_t jukeboxId);

// Finds the jukebox that the address names, by its ID when that is 1 or more, else by its exact
// name (the first of that name in the enumeration). `jukeboxId` becomes its ID, -1 when there is
// none. System error 6: no jukebox has the name, or neither ID nor name is given. A service error:
// the library does not know the ID.
Status ResolveJukebox(const ItemAddress& address, int32_t& jukeboxId);

}  // namespace krvcmd
