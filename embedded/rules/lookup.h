// Finding the items that keys name. Numbers are zero-based as in the keys; in texts they are
// one-based, as the user writes them. An item that is not there is thrown as a Refusal.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "embedded/model/farm.h"
#include "embedded/store/database.h"

namespace embedded {

struct SlotPlace {
    int32_t jukebox = 0;
    int32_t magazine = 0;
    int32_t slot = 0;
};

struct MediumView {
    int64_t id = 0;
    uint32_t type = 0;
    int32_t sides = 1;
};

// A slot of a present magazine.
struct SlotView {
    SlotPlace place;
    SlotState state = SlotState::Unknown;
    std::optional<MediumView> medium;
};

struct SideView {
    int32_t side = 0;
    Content content = Content::Blank;
    Finalization finalization = Finalization::Unknown;
    bool sequential = false;
    int32_t volume = 0;  // 0 = none; below 0 = one that the service has never seen
};

std::string JukeboxName(Database& database, int32_t jukebox);

// A slot named with magazine -1 counts through the whole jukebox; that fails beyond a magazine
// that is missing or has no slots.
SlotPlace ResolveSlot(Database& database, int32_t jukebox, int32_t magazine, int32_t slot);

// Refuses with code 502 when the magazine is not present.
SlotView FindSlot(Database& database, const SlotPlace& place);

// Nothing for a side that the medium does not have.
std::optional<SideView> FindSide(Database& database, const MediumView& medium, int32_t side);

void RequireMagazine(Database& database, int32_t jukebox, int32_t magazine);
void RequireVolume(Database& database, int32_t volume);

// Refuses with code 502 when the magazine is not present.
void RequirePresentMagazine(Database& database, int32_t jukebox, int32_t magazine);

// Words for messages: slot 3 of magazine 2 in jukebox "My Box".
std::string PlaceText(Database& database, const SlotPlace& place);
std::string SideText(Database& database, const SlotPlace& place, int32_t side);
std::string MagazineText(Database& database, int32_t jukebox, int32_t magazine);

// Short words for the journal, as a query shows a location: My Box\2\7, or My Box\7 with one magazine.
std::string LocationText(Database& database, const SlotPlace& place);

// What is on a medium, for the journal: "Disc-12, Disc-13", "blank DVD-RAM".
std::string MediumText(Database& database, const MediumView& medium);
std::string SideContentText(Database& database, const MediumView& medium, int32_t side);

}  // namespace embedded
