#pragma once

#include <string>
#include <vector>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/items.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// What a caller wants of a format. Without a label the volume keeps the one that it has. Certifying only
// takes time, on simulated media.
struct FormatWishes {
    std::string label;
    bool isSequential = false;
    bool isCertified = false;
};

// What is going to be written, by the rules of the service.
struct WritePlan {
    Slot slot;
    std::vector<Side> sides;  // none: there is nothing to do
    std::string label;        // of a format
    bool isSequential = false;
    std::string text;  // what has been done then, in words for the journal; a format has words of its own
};

// Each refuses what the service does not do and changes nothing. Side 2 of a key means both sides.
WritePlan PlanFormat(Database& database, const SideKey& key, const FormatWishes& wishes);
WritePlan PlanErase(Database& database, const SideKey& key);
WritePlan PlanFinalize(Database& database, const SideKey& key);

std::string FormatText(Database& database, const Slot& slot, const Side& side);

// Simulated media are what the catalogue says. Each of these calls runs in the caller's transaction, returns
// what it changed, for the journal, and throws a Refusal when it changes nothing.

// Formats one side.
ChangeMade FormatSide(Database& database, const SideKey& key, const FormatWishes& wishes);

// Blanks one side, or every side of the medium, and removes the volume from it.
ChangeMade EraseSide(Database& database, const SideKey& key);

// Closes every side of the medium, which the key must name as a whole, that holds a sequential file system.
ChangeMade FinalizeMedium(Database& database, const SideKey& key);

}  // namespace embedded
