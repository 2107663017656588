#pragma once

#include <cstdint>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// One slot of a jukebox, as library calls name it: magazine and slot are zero-based, the slot
// within its magazine. -1 stands for "not set".
struct SlotPosition {
    int32_t jukeboxId = -1;
    int32_t magazine = -1;
    int32_t slot = -1;
    int32_t side = -1;  // 0 = A, 1 = B, 2 = both; -1 = none given
};

// Finds the magazine that holds a slot numbered through the whole jukebox (zero-based). System
// error 22 when there is no such slot, or when a magazine before it is missing or empty; a service
// error when the jukebox cannot be described.
Status SlotFromAbsolute(int32_t jukeboxId, int32_t absoluteSlot, int32_t side, SlotPosition& position);

// What a walk over slots covers.
enum class WorkLevel : int32_t {
    Jukebox = 0,   // all slots of all magazines
    Magazine = 1,  // all slots of one magazine
    Slot = 2,      // from one slot on, crossing into the next magazines
};

// The position of a walk over the slots of one jukebox.
class SlotIterator {
  public:
    // Goes to the first slot of the walk and sets the level to Slot. `magazine` and `slot` are
    // one-based, -1 when not given; a slot without a magazine is numbered through the whole
    // jukebox. System error 2: no such magazine; 22: no such slot; a service error when the
    // jukebox cannot be described.
    Status Initialize(int32_t jukeboxId, int32_t magazine, int32_t slot, int32_t side);

    void SetLevel(WorkLevel level) { m_level = level; }

    // Goes to the next slot. System error 2 at the end of what the level covers.
    Status Next();

    const SlotPosition& Position() const { return m_position; }

    // Asks the jukebox for its number of magazines.
    Status RefreshMagazineCount();

    // Enters a magazine (zero-based) at its first slot. System error 2 when there is no such
    // magazine. One that cannot be described is entered as one without slots, with no error.
    Status LoadMagazine(int32_t magazine);

    // Goes to a slot (both zero-based). System error 22 when the magazine has no such slot.
    Status Seek(int32_t magazine, int32_t slot);

  private:
    WorkLevel m_level = WorkLevel::Slot;
    int32_t m_magazineCount = 0;
    int32_t m_slotCount = 0;  // of the current magazine
    SlotPosition m_position;
};

}  // namespace krvcmd
