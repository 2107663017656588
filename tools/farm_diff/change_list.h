#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tools/farm_diff/media_matching.h"
#include "tools/farm_diff/plan.h"

namespace embedded::tools {

// The changes found so far, by the ID of the jukebox and the one-based number of the magazine (0 = none).
using ChangeList = std::map<std::pair<int32_t, int32_t>, std::vector<Change>>;

// What the sides of media tell about volumes.
struct VolumeFindings {
    VolumesById before;
    VolumesById after;
    // before the import, and the ID that the volume got with it
    std::unordered_map<int32_t, int32_t> numbered;
    // label, file system and sizes are those of a format that is in the list, or the volume came or went with
    // something that is in the list
    std::unordered_set<int32_t> coveredBefore;
    std::unordered_set<int32_t> coveredAfter;
    // where the volume is listed: jukebox and magazine
    std::unordered_map<int32_t, std::pair<int32_t, int32_t>> groups;
};

// Adds the field where it differs.
void AddField(Change& change, const char* field, std::string before, std::string after);

}  // namespace embedded::tools
