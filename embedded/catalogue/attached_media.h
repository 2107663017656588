#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "embedded/catalogue/format_erase_finalize.h"
#include "embedded/catalogue/import_export_scan.h"
#include "embedded/jukebox/physical_jukebox.h"

namespace embedded {

// The parts of calls that only real jukeboxes need: elements, drives, and recognising media by their
// contents.

// The elements that a medium moves from and to.
struct ElementPair {
    uint16_t source = 0;
    uint16_t destination = 0;
};

// Import: from the mail slot with the medium (address 0 if no mail slot has it) to the slot. Export: from
// the slot to the first free mail slot; refuses with code 1209 without mail slots, 1208 without a free one.
ElementPair ElementsOfImport(Database& database, const Transfer& transfer);
ElementPair ElementsOfExport(Database& database, const Transfer& transfer);

// Refuses with code 1209 if the real jukebox has no mail slots. Does nothing for a simulated one.
void RequireMailSlots(Database& database, int32_t jukebox);

// A medium on its way to a drive and back.
struct LoadPlan {
    Slot slot;
    uint16_t home = 0;  // element addresses
    uint16_t drive = 0;
    int32_t driveNumber = 0;
    std::vector<int32_t> sides;  // to be read, one after the other
};

// Plans to load the medium of the slot, which must contain one, into the first enabled, known drive that is
// not in `taken`. `taken`: element addresses of occupied drives. `side`: 0, 1 or 2 (both). Refuses with
// code 1106 for a missing side B, 1210 without a usable drive.
LoadPlan PlanLoad(Database& database, const Slot& slot, int32_t side, const std::vector<uint16_t>& taken);

// Records which volumes are on the sides of a medium, new ones and known ones that came back, and returns the
// type of the medium. This and the following run in the caller's transaction.
uint32_t RecordReadings(Database& database, const Medium& medium, const std::vector<ReadSide>& sides);

// The state of the medium's slot, wherever that is.
void SetKnownState(Database& database, const Medium& medium, SlotState state);

// Marks a medium as unread before it is written.
void MarkUnread(Database& database, const Slot& slot);

// After RecordWriting: records what was read back from a real medium, or marks it as unread.
void ConfirmWriting(Database& database, const WritePlan& plan, const WrittenSides& written);

}  // namespace embedded
