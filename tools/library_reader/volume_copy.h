#pragma once

#include <cstdint>
#include <map>
#include <tuple>
#include <unordered_set>
#include <vector>

#include "embedded/model/farm.h"
#include "tools/library_reader/copy_log.h"
#include "tools/library_reader/library_service.h"

namespace embedded::tools {

// Jukebox ID, and magazine, slot and side, zero-based.
using SidePlace = std::tuple<int32_t, int32_t, int32_t, int32_t>;

struct VolumeCopy {
    std::vector<FarmVolume> volumes;
    std::unordered_set<int32_t> ids;
    // Of each side of a volume that has several: its position in the order of the volume's sides, one-based.
    std::map<SidePlace, int32_t> parts;
};

// Reads the volumes that the service lists, with their directory names and locations.
VolumeCopy CopyVolumes(const LibraryService& service, CopyLog& log);

}  // namespace embedded::tools
