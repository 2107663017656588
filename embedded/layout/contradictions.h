#pragma once

#include <cstdint>
#include <vector>

#include "embedded/layout/layout_reader.h"
#include "embedded/model/farm.h"

namespace embedded {

// The largest farm: more would make calls and commands too slow to be of use.
inline constexpr int64_t kMaxFarmSlots = 16'000'000;
inline constexpr int64_t kMaxSidesOfVolume = 100'000;

// Every contradiction in a farm whose fields are valid one by one: duplicate IDs, names and places,
// references to what does not exist, a disc on two sides, two sides of a volume with one part number, more
// free than total bytes, and more slots or sides than a farm can have. Each names the line of its item where
// the farm was read from a layout file.
std::vector<Problem> FindContradictions(const Farm& farm);

}  // namespace embedded
