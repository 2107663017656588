#pragma once

#include <optional>
#include <string>

#include "embedded/catalogue/change_made.h"
#include "embedded/model/refusal.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// Each of these calls runs in the caller's transaction, returns what it changed, for the journal,
// and throws a Refusal when it changes nothing.

// Moves the next medium of the import station into the slot, or into the first empty slot of the
// magazine or jukebox when the key names no slot, reads it and brings its volumes on-line.
ChangeMade ImportMedium(Database& database, const SlotKey& key);

// Moves the medium in the slot, or the first one of the magazine or jukebox, to the export station.
ChangeMade ExportMedium(Database& database, const SlotKey& key);

struct ScanResult {
    ChangeMade change{std::string()};
    // What the scan found is kept although the call fails: the medium cannot be read, or the slot is empty.
    std::optional<Refusal> refusal;
};

ScanResult ScanMedium(Database& database, const SideKey& key);

}  // namespace embedded
