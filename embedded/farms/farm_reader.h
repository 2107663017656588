// Reads a whole farm out of its database.
#pragma once

#include "embedded/model/farm.h"
#include "embedded/store/database.h"

namespace embedded {

// The farm as of one moment: nothing of a change that is under way.
Farm ReadFarm(Database& database);

}  // namespace embedded
