#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "embedded/catalogue/format_erase_finalize.h"
#include "embedded/catalogue/import_export_scan.h"
#include "embedded/jukebox/physical_jukebox.h"

namespace embedded {

// What of the calls is special in a real jukebox: elements, drives, and media that are recognised by what was
// read.

// The elements that a medium moves from and to.
struct ElementPair {
    uint16_t source = 0;
    uint16_t destination = 0;
};

// From the mail slot that holds the medium, and to one that is free; refused when there is none.
ElementPair ElementsOfImport(Database& database, const Transfer& transfer);
ElementPair ElementsOfExport(Database& database, const Transfer& transfer);

// Simulated jukeboxes need none.
void RequireMailSlots(Database& database, int32_t jukebox);

// A medium on its way to a drive and back.
struct LoadPlan {
    Slot slot;
    uint16_t home = 0;  // element addresses
    uint16_t drive = 0;
    int32_t driveNumber = 0;
    std::vector<int32_t> sides;  // to be read, one after the other
};

// Into the first drive that is enabled and known. `taken`: the elements of drives that hold a medium. The
// slot must hold one as well.
LoadPlan PlanLoad(Database& database, const Slot& slot, int32_t side, const std::vector<uint16_t>& taken);

// Records which volumes are on the sides of a medium, new ones and known ones that came back, and returns the
// type of the medium. This and the following run in the caller's transaction.
uint32_t RecordReadings(Database& database, const Medium& medium, const std::vector<ReadSide>& sides);

// The state of the medium's slot, wherever that is.
void SetKnownState(Database& database, const Medium& medium, SlotState state);

// Before a medium is written: nobody knows what is on it until the end is recorded.
void MarkUnread(Database& database, const Slot& slot);

// What is on a real medium after RecordWriting: what was read again, or that nobody knows it.
void ConfirmWriting(Database& database, const WritePlan& plan, const WrittenSides& written);

}  // namespace embedded
