// Items in the words of a list: "jukebox 8, magazine 1, slot 3, side A".
#pragma once

#include <string>

#include "embedded/calls/call_info.h"
#include "tools/krvsim/farm_query.h"

namespace embedded::tools {

// From six columns of a row: jukebox, magazine, slot, side, drive, volume, zero-based as in the database.
Item ItemOfRow(const Row& row, int column);

// One-based; `nothing` for an item without a number.
std::string ItemWords(const Item& item, const char* nothing);

}  // namespace embedded::tools
