#pragma once

#include <cstdint>
#include <vector>

#include "embedded/catalogue/items.h"
#include "embedded/jukebox/physical_jukebox.h"

namespace embedded {

// What changes of media do to the volumes on them.

// How many sides a volume has, and how many of them are in slots of present magazines.
struct VolumeReach {
    int64_t sides = 0;
    int64_t reached = 0;
};

VolumeReach FindReach(Database& database, int32_t volume);

// The number for the next new volume; it is never given again.
int32_t TakeVolumeId(Database& database);

// A new volume for the file system on a side; returns its number. And what is on a volume's side now.
int32_t AddVolume(Database& database, const SideReading& reading);
void SetVolume(Database& database, int32_t volume, const SideReading& reading);

// A volume that the service sees for the first time, on this medium, gets its number.
void NumberNewVolumes(Database& database, const Medium& medium);

void RemoveVolume(Database& database, int32_t volume);

// Sets the volume's state by where its media are and whether it is enabled, after either has changed.
void RefreshVolumeState(Database& database, int32_t volume);
// Each volume once, however often it is listed: a volume on many sides costs as much as it has sides.
void RefreshVolumeStates(Database& database, std::vector<int32_t> volumes);
void RefreshVolumesOf(Database& database, const Medium& medium);

}  // namespace embedded
