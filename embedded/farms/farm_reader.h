#pragma once

#include "embedded/model/farm.h"
#include "embedded/store/database.h"

namespace embedded {

// Reads a whole farm out of its database, as of one moment: nothing of a change that is under way.
Farm ReadFarm(Database& database);

}  // namespace embedded
