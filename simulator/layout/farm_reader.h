// Reads a whole farm out of its database.
#pragma once

#include <map>

#include "simulator/layout/farm.h"
#include "simulator/store/database.h"

namespace krvsim {

// The farm as of one moment: nothing of a change that is under way.
Farm ReadFarm(Database& database);

// The state that each volume would show by the places of its media and by whether it is enabled.
std::map<int32_t, VolumeState> UsualStates(const Farm& farm);

// Leaves of the volumes' states only those that are not the usual ones.
void DropUsualStates(Farm& farm);

}  // namespace krvsim
