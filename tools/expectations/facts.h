#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "embedded/model/farm.h"
#include "tools/farm_diff/plan.h"

namespace embedded::tools {

struct CallCounts {
    std::map<std::string, int64_t> byFunction;  // full names
    int64_t all = 0;
    int64_t failed = 0;
};

// What expectations are about. A part that is missing is not known, such as the status without a run.
struct Facts {
    const Farm& farm;
    const Plan* plan = nullptr;
    std::optional<CallCounts> calls;
    std::optional<int> status;
};

// Null for an item that does not exist. Jukeboxes are found by "@" and ID, by name or by ID; the numbers of
// magazines are one-based.
const FarmJukebox* FindJukebox(const Farm& farm, const std::string& word);
const FarmMagazine* FindMagazine(const FarmJukebox& jukebox, int64_t number);
const FarmMedium* FindMedium(const FarmMagazine& magazine, int64_t slot);
const FarmVolume* FindVolume(const Farm& farm, int64_t id);

// "full", "empty" and so on, as the slot shows itself.
std::string SlotStateText(const FarmMagazine& magazine, int64_t slot);

}  // namespace embedded::tools
