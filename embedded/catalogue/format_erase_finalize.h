#pragma once

#include <string>

#include "embedded/catalogue/change_made.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// Each of these calls runs in the caller's transaction, returns what it changed, for the journal,
// and throws a Refusal when it changes nothing. Side 2 of a key means both sides.

// Formats one side. Without a label the volume keeps the one that it has. Certifying only takes time.
struct FormatWishes {
    std::string label;
    bool isSequential = false;
    bool isCertified = false;
};
ChangeMade FormatSide(Database& database, const SideKey& key, const FormatWishes& wishes);

// Blanks one side, or every side of the medium, and removes the volume from it.
ChangeMade EraseSide(Database& database, const SideKey& key);

// Closes every side of the medium, which the key must name as a whole, that holds a sequential file system.
ChangeMade FinalizeMedium(Database& database, const SideKey& key);

}  // namespace embedded
