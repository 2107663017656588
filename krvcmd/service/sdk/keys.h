#pragma once

#include <cstdint>

#include "krvcmd/service/sdk/codes.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// Makers of key records, with their sizes set. Each key is made from the key of what the item belongs to and
// the item's own number, zero-based; kUnset leaves a field unset.

inline JukeboxKey MakeJukeboxKey(int32_t jukeboxId) {
    return {sizeof(JukeboxKey), jukeboxId};
}

inline MagazineKey MakeMagazineKey(const JukeboxKey& jukebox, int32_t magazine) {
    return {sizeof(MagazineKey), jukebox.jukeboxId, magazine};
}

inline DriveKey MakeDriveKey(const JukeboxKey& jukebox, int32_t drive) {
    return {sizeof(DriveKey), jukebox.jukeboxId, drive};
}

inline SlotKey MakeSlotKey(const MagazineKey& magazine, int32_t slot) {
    return {sizeof(SlotKey), magazine.jukeboxId, magazine.magazine, slot};
}

// A slot that is numbered through the whole jukebox.
inline SlotKey MakeAbsoluteSlotKey(const JukeboxKey& jukebox, int32_t slot) {
    return MakeSlotKey(MakeMagazineKey(jukebox, kUnset), slot);
}

inline SideKey MakeSideKey(const SlotKey& slot, int32_t side) {
    return {sizeof(SideKey), slot.jukeboxId, slot.magazine, slot.slot, side};
}

inline constexpr SideKey kUnsetSideKey{sizeof(SideKey), kUnset, kUnset, kUnset, kUnset};

}  // namespace krvcmd
