#pragma once

#include <cstdint>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {

// One question to the library each. Numbers are zero-based. Every record is preset as the library
// expects it before the call; on a service error it holds what the library left in it.

Status GetJukebox(int32_t jukeboxId, JukeboxInfo& jukebox);
Status GetMagazineInfo(int32_t jukeboxId, int32_t magazine, MagazineRecord& record);
Status GetDriveInfo(int32_t jukeboxId, int32_t drive, DriveRecord& record);
Status GetSlotInfo(int32_t jukeboxId, int32_t magazine, int32_t slot, SlotRecord& record);
Status GetSideInfo(const SideKey& key, SideRecord& record);

// Asks for the jukebox only to learn whether the library knows it.
Status CheckJukebox(int32_t jukeboxId);

// Finds the jukebox that the address names, by its ID when that is 1 or more, else by its exact
// name (the first of that name in the enumeration). `jukeboxId` becomes its ID, -1 when there is
// none. System error 6: no jukebox has the name, or neither ID nor name is given. A service error:
// the library does not know the ID.
Status ResolveJukebox(const ItemAddress& address, int32_t& jukeboxId);

}  // namespace krvcmd
