#pragma once

#include <cstdint>

#include "krvcmd/frontend/status.h"

namespace krvcmd {

// One slot of a jukebox, as library calls name it: magazine and slot are zero-based, the slot
// within its magazine. -1 stands for "not set".
struct SlotPosition {
    std::int32_t jukeboxId = -1;
    std::int32_t magazine = -1;
    std::int32_t slot = -1;
    std::int32_t side = -1;  // 0 = A, 1 = B, 2 = both; -1 = none given
};

// Finds the magazine that holds a slot numbered through the whole jukebox (zero-based). System
// error 22 when there is no such slot, or when a magazine before it is missing or empty; a service
// error when the jukebox cannot be described.
Status SlotFromAbsolute(std::int32_t jukeboxId, std::int32_t absoluteSlot, std::int32_t side,
                        SlotPosition& position);

}  // namespace krvcmd
