#pragma once

#include <ostream>
#include <string_view>

#include "embedded/model/farm.h"

namespace embedded {

// Writes a farm as one JSON object; docs/krvsim.md describes it. Numbers are one-based as in a layout file,
// states are words, and nothing is left out.
void WriteJson(std::ostream& out, std::string_view server, const Farm& farm);

}  // namespace embedded
