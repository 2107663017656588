#pragma once

#include <set>

#include "tools/farm_diff/change_list.h"
#include "tools/farm_diff/media_matching.h"

namespace embedded::tools {

// Jukeboxes, drives, magazines and the states of slots. The media have been compared: a slot that one of them
// left or entered is not reported again.
void AddJukeboxChanges(const Farm& before, const Farm& after, const std::vector<MediumPair>& media,
                       ChangeList& changes);

// What no change of a medium explains.
void AddVolumeChanges(const VolumeFindings& findings, const Farm& before, const Farm& after,
                      ChangeList& changes);

// The jukeboxes whose ID only one of the farms has.
std::set<int32_t> JukeboxesOfOneFarm(const Farm& before, const Farm& after);

}  // namespace embedded::tools
