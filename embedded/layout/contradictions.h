// What in a farm contradicts itself, although each field alone is right.
#pragma once

#include <vector>

#include "embedded/layout/layout_reader.h"
#include "embedded/model/farm.h"

namespace embedded {

// Every contradiction, with the line of the layout file where the farm was read from one.
std::vector<Problem> FindContradictions(const Farm& farm);

}  // namespace embedded
