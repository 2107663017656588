// Steps that more than one change of the farm takes.
#pragma once

#include <cstdint>

#include "embedded/rules/lookup.h"

namespace embedded {

// Media are moved by the jukebox's mechanics: not while it is disabled.
void RequireEnabledJukebox(Database& database, int32_t jukebox);

// The slot of a key with its medium. Refuses an empty slot with code 501, one that is not present with 502.
// A slot that has not been read counts by what is in it.
SlotView RequireMedium(Database& database, const SlotPlace& place);

void SetSlotState(Database& database, const SlotPlace& place, SlotState state);

// Whether a scan would read the medium: at least one of its sides is not bad.
bool IsReadable(Database& database, const MediumView& medium);

// Works out anew whether the volume is active, disabled or offline, after one of its media was
// moved or it was switched. A disc or a volume set is on-line when all of its sides are in slots
// of present magazines, a mirror when one is.
void RefreshVolumeState(Database& database, int32_t volume);
void RefreshVolumesOf(Database& database, const MediumView& medium);

}  // namespace embedded
