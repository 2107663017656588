// The records of the binary interface as the rows of the database give them.
#pragma once

#include <optional>

#include "embedded/rules/lookup.h"
#include "embedded/store/rows.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// From a row of Sql::Jukebox, Sql::Drive, and Sql::Volume or Sql::VolumesAhead.
JukeboxRecord DescribeJukebox(const Rows& rows);
DriveRecord DescribeDrive(const Rows& rows);
VolumeRecord DescribeVolume(const Rows& rows);

// What is reported of a side: while the medium was not read, the slot's state stands for that of
// its sides, and only the volume that the service knew before is told. `side` is nothing where the
// medium has none of that name.
SideRecord DescribeSide(SlotState slot, const std::optional<MediumView>& medium,
                        const std::optional<SideView>& side);

// Whether the look at a side that is described so fails with code 3.
bool IsUnreadable(const SideRecord& record);

}  // namespace embedded
