#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "embedded/journal/call_info.h"
#include "embedded/model/refusal.h"
#include "embedded/store/statement.h"

namespace embedded {

// A fault of a farm: calls that shall fail or take long. Faults live in the database, so that they outlast
// processes and count the calls of all processes together.
struct Fault {
    int64_t id = 0;
    std::string function;          // or "*" for every one
    Item item;                     // its text is not used
    int64_t skip = 0;              // matching calls that pass first
    std::optional<int64_t> times;  // that it strikes; nothing: for ever
    double probability = 1;
    int64_t seed = 0;
    std::optional<int32_t> code;  // nothing: it only delays
    std::string text;
    std::chrono::milliseconds delay{0};
    int64_t matched = 0;  // calls so far
    int64_t fired = 0;
};

// From the next columns of a row: id, function, the six of ReadItem, skip, times, probability, seed, code,
// text, delay, matched, fired.
Fault ReadFault(Statement& row);

struct FaultEffect {
    std::chrono::milliseconds delay{0};
    std::optional<Refusal> refusal;
};

// Whether the farm has a fault for this function at all.
bool HasFaults(Database& database, const char* function);

// What the farm's faults do to this call. Counts the call for each fault that it matches, in the caller's
// transaction. The first fault that strikes with a failure decides it; the delays of all that strike add up.
FaultEffect ApplyFaults(Database& database, const CallInfo& call);

// Whether a fault of this probability strikes at its n-th call: the same answer for the same seed.
bool StrikesByChance(double probability, int64_t seed, int64_t call);

}  // namespace embedded
