#pragma once

#include <cstdint>

#include "krvcmd/frontend/item_address.h"
#include "krvcmd/frontend/status.h"

namespace krvcmd {

// Finds the jukebox that the address names, by its ID when that is 1 or more, else by its exact
// name (the first of that name in the enumeration). `jukeboxId` becomes its ID, -1 when there is
// none. System error 6: no jukebox has the name, or neither ID nor name is given. A service error:
// the library does not know the ID.
Status ResolveJukebox(const ItemAddress& address, std::int32_t& jukeboxId);

}  // namespace krvcmd
