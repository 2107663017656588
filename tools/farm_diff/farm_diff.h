#pragma once

#include "embedded/model/farm.h"
#include "tools/farm_diff/plan.h"

namespace embedded::tools {

// What is different in `after`. A medium is the same in both farms if it has the same ID, where the IDs of
// both farms mean the same media, or holds the same volume; else if it is of the same type in the same
// place, or looks the same. The number for the next new volume is no difference, and neither is what follows
// from others: which volumes are on-line, and which slots are full.
Plan CompareFarms(const Farm& before, const Farm& after);

}  // namespace embedded::tools
