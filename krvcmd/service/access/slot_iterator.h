#pragma once

#include <cstdint>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {

// One slot of a jukebox, as library calls name it: magazine and slot are zero-based, the slot within its
// magazine.
struct SlotPosition {
    int32_t jukeboxId = kUnset;
    int32_t magazine = kUnset;
    int32_t slot = kUnset;
    int32_t side = kUnset;  // as addressed; kUnset: no side

    SlotKey GetSlotKey() const {
        return MakeSlotKey(MakeMagazineKey(MakeJukeboxKey(jukeboxId), magazine), slot);
    }
    SideKey GetSideKey(int32_t ofSide) const { return MakeSideKey(GetSlotKey(), ofSide); }
};

// The sides of a medium that a side in an address stands for.
struct SideRange {
    int32_t first;
    int32_t last;
};

// Side A or B alone; both for every other number.
inline SideRange SidesOf(int32_t side) {
    const bool isOneSide = side == kSideA || side == kSideB;
    return isOneSide ? SideRange{side, side} : SideRange{kSideA, kSideB};
}

// Finds the magazine that holds a slot numbered through the whole jukebox; `absolute.magazine` is not read.
// System error 22 when there is no such slot, or when a magazine before it is missing or empty; a service
// error when the jukebox cannot be described.
Status SlotFromAbsolute(const SlotKey& absolute, int32_t side, SlotPosition& position);

// What a walk over slots covers.
enum class WorkLevel : int32_t {
    Jukebox = 0,   // all slots of all magazines
    Magazine = 1,  // all slots of one magazine
    Slot = 2,      // from one slot on, crossing into the next magazines
};

// The position of a walk over the slots of one jukebox.
class SlotIterator {
  public:
    // Goes to the first slot of the walk and sets the level to Slot. The jukebox of the address is an ID. A
    // slot without a magazine is numbered through the whole jukebox. System error 2: no such magazine; 22: no
    // such slot; a service error when the jukebox cannot be described.
    Status Initialize(const ItemAddress& address);

    void SetLevel(WorkLevel level) { m_level = level; }

    // Goes to the next slot. System error 2 at the end of what the level covers.
    Status Next();

    const SlotPosition& Position() const { return m_position; }

    // Asks the jukebox for its number of magazines.
    Status RefreshMagazineCount();

    // Enters a magazine (zero-based) at its first slot. System error 2 when there is no such magazine. One
    // that cannot be described is entered as one without slots, with no error.
    Status LoadMagazine(int32_t magazine);

    // Goes to a slot of a jukebox. System error 2: no such magazine; 22: no such slot.
    Status Seek(const SlotPosition& position);

  private:
    WorkLevel m_level = WorkLevel::Slot;
    int32_t m_magazineCount = 0;
    int32_t m_slotCount = 0;  // of the current magazine
    SlotPosition m_position;
};

}  // namespace krvcmd
