#pragma once

#include <string>

#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// Each of these calls runs in the caller's transaction, returns what it changed, in words for the journal,
// and throws a Refusal when it changes nothing. Side 2 of a key means both sides.

// Formats one side. `label` empty: the volume keeps the label that it has.
std::string FormatSide(Database& database, const SideKey& key, const std::string& label, bool sequential);

// Blanks one side, or every side of the medium, and removes the volume from it.
std::string EraseSide(Database& database, const SideKey& key);

// Closes every side of the medium, which the key must name as a whole, that holds a sequential file system.
std::string FinalizeMedium(Database& database, const SideKey& key);

}  // namespace embedded
