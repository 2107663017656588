#pragma once

#include <string>
#include <vector>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/import_export_scan.h"
#include "embedded/catalogue/items.h"
#include "embedded/jukebox/physical_jukebox.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// What a caller wants of a format. Without a label the volume keeps the one that it has. Certifying only
// takes time, on simulated media.
struct FormatRequest {
    std::string label;
    bool isSequential = false;
    bool isCertified = false;
};

enum class WriteTask { Format, Erase, Finalize };

// What is going to be written, by the rules of the service.
struct WritePlan {
    WriteTask task = WriteTask::Format;
    Slot slot;
    std::vector<Side> sides;  // as they are before; none: there is nothing to do
    // Of a format.
    std::string label;
    bool isSequential = false;
    // For the journal. A format has words of its own.
    HandledSides handledSides = HandledSides::None;
    bool isCertified = false;
    std::string words;
};

// Each refuses what the service does not do and changes nothing. Side 2 of a key means both sides: an erase
// takes one side or both, a finalization both, and closes those that hold a sequential file system.
WritePlan PlanFormat(Database& database, const SideKey& key, const FormatRequest& request);
WritePlan PlanErase(Database& database, const SideKey& key);
WritePlan PlanFinalize(Database& database, const SideKey& key);

// What has been written.
struct WrittenSides {
    std::vector<ReadSide> sides;  // those that were written and read again, in the order of the plan
    SideChange end;               // how the last one ended
};

// Records the sides, in the caller's transaction: a volume that is formatted keeps its ID, one that is erased
// is gone. Records nothing and refuses when the last side was not written.
CallOutcome RecordWriting(Database& database, const WritePlan& plan, const WrittenSides& written);

}  // namespace embedded
