#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "embedded/catalogue/import_export_scan.h"
#include "embedded/jukebox/physical_jukebox.h"

namespace embedded {

// What the calls are in a real jukebox. Plans refuse what the service does not do, and change nothing.

struct MovePlan {
    Transfer transfer;
    uint16_t source = 0;  // element addresses
    uint16_t destination = 0;
};

// From the mail slots, and to them.
MovePlan PlanRealImport(Database& database, const SlotKey& key);
MovePlan PlanRealExport(Database& database, const SlotKey& key);

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

// What was read of a side; in the order of the plan.
struct ReadSide {
    int32_t side = 0;
    SideReading reading;
};

// Records what the medium holds: which volumes are on it, new ones and known ones that came back. Runs in the
// caller's transaction.
ScanResult RecordScan(Database& database, const Slot& slot, const std::vector<ReadSide>& sides);

// Before a medium is written: nobody knows what is on it until the end is recorded.
void MarkUnread(Database& database, const Slot& slot);
// Nothing was written after all.
void MarkUnchanged(Database& database, const Slot& slot);

// Records sides that were written and read again; a volume that was formatted keeps its ID.
void RecordWriting(Database& database, const Slot& slot, std::vector<ReadSide> sides);

}  // namespace embedded
