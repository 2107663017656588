#pragma once

#include <vector>

#include "embedded/layout/layout_reader.h"
#include "embedded/model/farm.h"

namespace embedded {

// Every contradiction in a farm whose fields are valid one by one: duplicate IDs, names and places,
// references to what does not exist, a disc on two sides, more free than total bytes. Each names the line of
// its item where the farm was read from a layout file.
std::vector<Problem> FindContradictions(const Farm& farm);

}  // namespace embedded
