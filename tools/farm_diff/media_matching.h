#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "embedded/model/farm.h"
#include "tools/farm_diff/plan.h"

namespace embedded::tools {

using VolumesById = std::unordered_map<int32_t, const FarmVolume*>;

// All volumes of a farm, which must outlive them.
VolumesById VolumesOf(const Farm& farm);

struct PlacedMedium {
    FarmPlace place;
    const FarmMedium* medium = nullptr;
};

// All media of a farm, which must outlive them.
std::vector<PlacedMedium> PlacedMedia(const Farm& farm);

// The same medium in two farms; null where it is in only one.
struct MediumPair {
    const PlacedMedium* before = nullptr;
    const PlacedMedium* after = nullptr;
};

// Each medium once: those of `before` in their order, then those that are only in `after`.
std::vector<MediumPair> MatchMedia(const Farm& farmBefore, const std::vector<PlacedMedium>& before,
                                   const Farm& farmAfter, const std::vector<PlacedMedium>& after);

}  // namespace embedded::tools
