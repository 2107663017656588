// What in a farm contradicts itself, although each field alone is right.
#pragma once

#include <vector>

#include "simulator/layout/farm.h"
#include "simulator/layout/layout_reader.h"

namespace krvsim {

// Every contradiction, with the line of the layout file where the farm was read from one.
std::vector<Problem> FindContradictions(const Farm& farm);

}  // namespace krvsim
