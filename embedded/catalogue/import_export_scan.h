#pragma once

#include <string>
#include <vector>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/items.h"
#include "embedded/jukebox/physical_jukebox.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// What a move is going to be, by the rules of the service; `slot` is its end inside of the magazines.
struct Transfer {
    Medium medium;
    SlotPlace slot;
};

// Each refuses what the service does not do and changes nothing. When the key names no slot, an import goes
// to the first empty slot of the magazine or jukebox, and an export takes the first medium.
Transfer PlanImport(Database& database, const SlotKey& key);
Transfer PlanExport(Database& database, const SlotKey& key);
Slot FindSlotToScan(Database& database, const SideKey& key);

// What a drive has read of a side.
struct ReadSide {
    int32_t side = 0;
    SideReading reading;
    bool isOnRecord = false;  // the catalogue says so already, as it does of simulated media
};

// Each records what has happened physically, in the caller's transaction: states, IDs of new volumes, volumes
// on-line and off-line, and words for the journal.

// The medium is in the slot. `sides`: what a drive has read on the way; without any, the state of the slot is
// on record already.
CallOutcome RecordImport(Database& database, const Transfer& transfer, const std::vector<ReadSide>& sides);

// The medium is in the export station.
CallOutcome RecordExport(Database& database, const Transfer& transfer);

// `side`: of the key; `sides`: what was found there, nothing in an empty slot.
CallOutcome RecordScan(Database& database, const Slot& slot, int32_t side,
                       const std::vector<ReadSide>& sides);

}  // namespace embedded
