#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {

// The volume's record and its aspects.
Status GetVolume(int32_t volumeId, VolumeInfo& volume);

// The volume's aspects (its directory names), appended to `aspects`. A buffer that cannot be obtained in
// the size that the library names is like any other memory that runs out: it throws, and ends the command.
Status ReadVolumeAspects(int32_t volumeId, std::vector<std::string>& aspects);

// Splits a list of NUL-terminated strings that an empty string ends. A string that begins beyond
// `requiredSize`, the library's word for the list's length, is not taken. Nothing outside the
// buffer is looked at, even when the list's end is missing.
void SplitAspects(std::span<const char> buffer, size_t requiredSize, std::vector<std::string>& aspects);

// Where the volume lies. A volume that lies nowhere has no location, which is no error. System
// error 12 when there are more locations than memory can hold.
Status ReadVolumeLocations(int32_t volumeId, std::vector<SideKey>& locations);

// As ReadVolumeLocations, but only one location is asked for, however many there are; `found`
// tells whether there is one.
Status ReadFirstVolumeLocation(int32_t volumeId, SideKey& location, bool& found);

}  // namespace krvcmd
