#pragma once

#include <cstddef>

#include "embedded/remote/protocol/ahead.h"
#include "embedded/sessions/connection.h"

namespace embedded::remote {

// The most items that are read ahead for one call.
inline constexpr size_t kMostAhead = 32768;

// What a caller is likely to ask next, all of it in the view. Items that a call would refuse are left out:
// the call itself tells why.

// After KrvGetJukebox: its magazines and drives.
Ahead ReadAheadOfJukebox(const View& view, int32_t jukebox);
// After KrvGetSlot or KrvGetSide: slots from this one on, with their sides and volumes.
Ahead ReadAheadOfSlot(const View& view, const SlotKey& slot, size_t count);
// After KrvVolumeDetail, and other calls for one volume: the volume.
Ahead ReadAheadOfVolume(const View& view, uint32_t volume);
// After KrvGetNextVolume: the volumes from this one on.
Ahead ReadAheadOfVolumes(const View& view, uint32_t first, size_t count);

}  // namespace embedded::remote
