#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/model/farm.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// The items that keys name, as the rules need them. All numbers are zero-based, as in the keys. Each Find
// refuses an item that does not exist, unless it returns an std::optional.

struct Jukebox {
    std::string name;
    bool isEnabled = true;
    int32_t magazineCount = 0;
};

struct Magazine {
    int32_t slotCount = 0;
    bool isPresent = true;
};

struct SlotPlace {
    int32_t jukebox = 0;
    int32_t magazine = 0;
    int32_t slot = 0;
};

struct Medium {
    int64_t id = 0;
    uint32_t type = 0;
};

// A slot of a present magazine.
struct Slot {
    SlotPlace place;
    SlotState state = SlotState::Unknown;
    std::optional<Medium> medium;
};

struct Side {
    int32_t number = 0;  // 0 = side A, 1 = side B
    Content content = Content::Blank;
    Finalization finalization = Finalization::Unknown;
    bool isSequential = false;
    int32_t volume = 0;  // 0 = none; below 0 = one that the service has never seen
};

struct Volume {
    VolumeType type = VolumeType::Disc;
    int32_t shownState = 0;  // a VolumeState, or any other number for unknown
    bool isEnabled = true;
    std::string label;
    uint64_t total = 0;  // bytes
};

Jukebox FindJukebox(Database& database, int32_t jukebox);

// Media are moved by the jukebox's mechanics: not while it is disabled.
void RequireEnabledJukebox(Database& database, int32_t jukebox);

Magazine FindMagazine(Database& database, int32_t jukebox, int32_t magazine);

// Refuses with code 502 when the magazine is not present.
void RequirePresentMagazine(Database& database, int32_t jukebox, int32_t magazine);

// A slot named with magazine -1 counts through the whole jukebox; that fails beyond a magazine
// that is missing or has no slots.
SlotPlace ResolveSlot(Database& database, int32_t jukebox, int32_t magazine, int32_t slot);

// Refuses with code 502 when the magazine is not present.
Slot FindSlot(Database& database, const SlotPlace& place);

// Refuses a slot whose own state is "not present" with code 502.
void RequirePresentSlot(Database& database, const Slot& slot);

// The slot with its medium. Refuses an empty slot with code 501, one that is not present with 502. What is in
// a slot counts, even when the slot has not been read yet.
Slot FindSlotWithMedium(Database& database, const SlotPlace& place);

// The slot's number counted through the whole jukebox, zero-based.
int32_t AbsoluteSlot(Database& database, const SlotPlace& place);

void SetSlotState(Database& database, const SlotPlace& place, SlotState state);

// The number of the first free position on the shelf, zero-based.
int32_t EndOfShelf(Database& database);

// Outside of slots, the number of the slot is the position; on the shelf, jukebox and magazine are 0.
void SetMediumPlace(Database& database, int64_t medium, Place place, const SlotPlace& to);

// Nothing for a side that the medium does not have.
std::optional<Side> FindSide(Database& database, const Medium& medium, int32_t side);
std::vector<Side> FindSides(Database& database, const Medium& medium);

// Whether a scan can read the medium: at least one of its sides is not bad.
bool IsReadable(Database& database, const Medium& medium);

std::optional<Volume> FindVolume(Database& database, int64_t volume);

// The volume's ID, which fits into 31 bits.
int32_t RequireVolume(Database& database, uint32_t volume);

// Where the volume lies, in the order of its parts: its sides in slots of present magazines.
std::vector<SideKey> FindLocations(Database& database, int64_t volume);

}  // namespace embedded
