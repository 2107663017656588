// What the library answers about items: the records of the binary interface, filled from the farm.
// The record's size has been checked; every field after it is filled. Refusals are thrown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// The next higher ID, 0 after the last one.
uint32_t NextJukebox(Database& database, uint32_t previous);
uint32_t NextVolume(Database& database, uint32_t previous);

void LookAtJukebox(Database& database, const JukeboxKey& key, JukeboxRecord& record);
void LookAtMagazine(Database& database, const MagazineKey& key, MagazineRecord& record);
void LookAtDrive(Database& database, const DriveKey& key, DriveRecord& record);
void LookAtSlot(Database& database, const SlotKey& key, SlotRecord& record);

// Refuses a bad side with code 3, the record filled all the same.
void LookAtSide(Database& database, const SideKey& key, SideRecord& record);

void LookAtVolume(Database& database, uint32_t volume, VolumeRecord& record);

// The volume's directory names, each ended by a NUL, and one more NUL; empty when it has none.
std::string AspectsOf(Database& database, uint32_t volume);

// Where the volume lies, in the order of its parts; code 500 when it lies nowhere.
std::vector<SideKey> LocationsOf(Database& database, uint32_t volume);

}  // namespace embedded
