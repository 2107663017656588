// Format, erase and finalize. The caller has opened a transaction; each returns what it changed,
// in words for the journal, and throws a Refusal when it changes nothing.
#pragma once

#include <string>

#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// The file systems that a format writes, and the one for write-once media and `sequential`.
inline constexpr const char* kRandomFileSystem = "UDF 2.01";
inline constexpr const char* kSequentialFileSystem = "UDF 1.50 seq";

// Formats one side. `label` empty: the volume keeps the label that it has.
std::string FormatSide(Database& database, const SideKey& key, const std::string& label, bool sequential);

// Blanks one side, or with side 2 every side of the medium, and removes the volume from it.
std::string EraseSide(Database& database, const SideKey& key);

// Closes every side of the medium that holds a sequential file system.
std::string FinalizeMedium(Database& database, const SideKey& key);

}  // namespace embedded
