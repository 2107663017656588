// Faults that a farm has: calls that shall fail or take long. They live in the database, so that
// they outlast processes and their counting holds for all processes together.
#pragma once

#include <chrono>
#include <optional>

#include "embedded/calls/call_info.h"
#include "embedded/model/refusal.h"
#include "embedded/store/database.h"

namespace embedded {

struct FaultEffect {
    std::chrono::milliseconds delay{0};
    std::optional<Refusal> refusal;
};

// Whether the farm has a fault for this function at all.
bool HasFaults(Database& database, const char* function);

// What the farm's faults do to this call. Counts the call for each fault that it matches; the
// caller has opened a transaction. The first fault that strikes with a failure decides it, the
// delays of all that strike add up.
FaultEffect ApplyFaults(Database& database, const CallInfo& call);

// Whether a fault of this probability strikes at its n-th call: the same answer for the same seed.
bool StrikesByChance(double probability, int64_t seed, int64_t call);

}  // namespace embedded
