#pragma once

#include <ostream>
#include <string_view>

#include "embedded/model/farm.h"

namespace embedded {

// Writes a layout file, which ReadLayout reads back into an equal farm. Leaves out fields with their default
// value.
void WriteLayout(std::ostream& out, std::string_view server, const Farm& farm);

}  // namespace embedded
