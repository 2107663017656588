#pragma once

#include <optional>
#include <string>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/items.h"
#include "embedded/model/refusal.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// What a move is going to be, by the rules of the service; `slot` is its end inside of the magazines.
struct Transfer {
    Medium medium;
    SlotPlace slot;
};

// Each refuses what the service does not do and changes nothing.
Transfer PlanImport(Database& database, const SlotKey& key);
Transfer PlanExport(Database& database, const SlotKey& key);
Slot FindSlotToScan(Database& database, const SideKey& key);

// What has been done, in words for the journal.
std::string ImportText(Database& database, const Transfer& transfer);
std::string ExportText(Database& database, const Transfer& transfer);
std::string ScanText(Database& database, const Slot& slot);

// In a simulated jukebox a medium is where the catalogue says, and on it is what the catalogue says. Each of
// these calls runs in the caller's transaction, returns what it changed, for the journal, and throws a
// Refusal when it changes nothing.

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
