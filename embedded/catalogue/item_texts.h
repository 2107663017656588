#pragma once

#include <cstdint>
#include <string>

#include "embedded/catalogue/items.h"

namespace embedded {

// A zero-based number as the user writes it, without overflow for a hostile one.
std::string OneBased(int32_t number);

// "A" or "B".
const char* SideLetter(int32_t side);

// Items in the words of messages: slot 3 of magazine 2 in jukebox "My Box".
std::string MagazineText(Database& database, int32_t jukebox, int32_t magazine);
std::string PlaceText(Database& database, const SlotPlace& place);
std::string SideText(Database& database, const SlotPlace& place, int32_t side);

// Short words for the journal, as a query shows a location: My Box\2\7, or My Box\7 with one magazine.
std::string LocationText(Database& database, const SlotPlace& place);

// A volume for the journal: "volume 12", with its label behind it when it has one: "volume 12 (Disc-12)".
std::string VolumeText(Database& database, int32_t volume);

// What is on a medium or on one of its sides, for the journal: "Disc-12, Disc-13", "blank DVD-RAM".
std::string MediumText(Database& database, const Medium& medium);
std::string SideContentText(Database& database, const Medium& medium, int32_t side);

}  // namespace embedded
