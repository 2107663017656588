#pragma once

#include <cstdint>

#include "krvcmd/frontend/status.h"
#include "krvcmd/service/item_info.h"
#include "krvcmd/service/krv_sdk.h"

namespace krvcmd {

// One question to the library each. Numbers are zero-based. Every record is preset as the library
// expects it before the call; on a service error it holds what the library left in it.

Status GetJukebox(std::int32_t jukeboxId, JukeboxInfo& jukebox);
Status GetMagazineInfo(std::int32_t jukeboxId, std::int32_t magazine, MagazineRecord& record);
Status GetDriveInfo(std::int32_t jukeboxId, std::int32_t drive, DriveRecord& record);
Status GetSlotInfo(std::int32_t jukeboxId, std::int32_t magazine, std::int32_t slot, SlotRecord& record);
Status GetSideInfo(const SideKey& key, SideRecord& record);

// Asks for the jukebox only to learn whether the library knows it.
Status CheckJukebox(std::int32_t jukeboxId);

}  // namespace krvcmd
