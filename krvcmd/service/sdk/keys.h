#pragma once

#include <cstdint>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// Makers of key records, with their sizes set. Magazine, slot, drive and side are zero-based;
// -1 leaves a field unset.

inline JukeboxKey MakeJukeboxKey(int32_t jukeboxId) {
    return {sizeof(JukeboxKey), jukeboxId};
}

inline MagazineKey MakeMagazineKey(int32_t jukeboxId, int32_t magazine) {
    return {sizeof(MagazineKey), jukeboxId, magazine};
}

inline DriveKey MakeDriveKey(int32_t jukeboxId, int32_t drive) {
    return {sizeof(DriveKey), jukeboxId, drive};
}

inline SlotKey MakeSlotKey(int32_t jukeboxId, int32_t magazine, int32_t slot) {
    return {sizeof(SlotKey), jukeboxId, magazine, slot};
}

inline SideKey MakeSideKey(int32_t jukeboxId, int32_t magazine, int32_t slot, int32_t side) {
    return {sizeof(SideKey), jukeboxId, magazine, slot, side};
}

inline SideKey UnsetSideKey() {
    return MakeSideKey(-1, -1, -1, -1);
}

}  // namespace krvcmd
