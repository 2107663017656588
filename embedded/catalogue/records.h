#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/catalogue/items.h"
#include "embedded/store/statement.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// What the library answers about items: the records of the binary interface, filled from the farm. Every
// field is filled. An item that does not exist is refused.

// The next higher ID, 0 after the last one.
uint32_t NextJukebox(Database& database, uint32_t previous);
uint32_t NextVolume(Database& database, uint32_t previous);

JukeboxRecord DescribeJukebox(Database& database, const JukeboxKey& key);
MagazineRecord DescribeMagazine(Database& database, const MagazineKey& key);
DriveRecord DescribeDrive(Database& database, const DriveKey& key);
SlotRecord DescribeSlot(Database& database, const SlotKey& key);

// Refuses a bad side with code 3, the record filled all the same.
void DescribeSide(Database& database, const SideKey& key, SideRecord& record);

VolumeRecord DescribeVolume(Database& database, uint32_t volume);

// From the columns type, state, file_system, label, total, free, value1, value2 of a volume, the next ones of
// the row.
VolumeRecord ReadVolumeRecord(Statement& row);

// What is reported of a side. While the medium has not been read, the slot's state stands for that of its
// sides, and only the volume that the service knew before is reported. `side` is nothing where the medium has
// none of that name.
SideRecord SideRecordOf(SlotState slot, const std::optional<Medium>& medium, const std::optional<Side>& side);

// Whether asking for the side fails with code 3.
bool IsUnreadable(const SideRecord& record);

// The volume's directory names, each ended by a NUL, and one more NUL; empty when it has none.
std::string DescribeAspects(Database& database, uint32_t volume);

// Where the volume is, in the order of its parts; refuses with code 500 when it has no location.
std::vector<SideKey> DescribeLocations(Database& database, uint32_t volume);

}  // namespace embedded
