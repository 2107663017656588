#pragma once

#include <cstdint>

#include "krvcmd/frontend/status.h"
#include "krvcmd/service/slot_position.h"

namespace krvcmd {

// What a walk over slots covers.
enum class WorkLevel : std::int32_t {
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
    Status Initialize(std::int32_t jukeboxId, std::int32_t magazine, std::int32_t slot, std::int32_t side);

    void SetLevel(WorkLevel level) { m_level = level; }

    // Goes to the next slot. System error 2 at the end of what the level covers.
    Status Next();

    const SlotPosition& Position() const { return m_position; }

    // Asks the jukebox for its number of magazines.
    Status RefreshMagazineCount();

    // Enters a magazine (zero-based) at its first slot. System error 2 when there is no such
    // magazine. One that cannot be described is entered as one without slots, with no error.
    Status LoadMagazine(std::int32_t magazine);

    // Goes to a slot (both zero-based). System error 22 when the magazine has no such slot.
    Status Seek(std::int32_t magazine, std::int32_t slot);

  private:
    WorkLevel m_level = WorkLevel::Slot;
    std::int32_t m_magazineCount = 0;
    std::int32_t m_slotCount = 0;  // of the current magazine
    SlotPosition m_position;
};

}  // namespace krvcmd
