#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/rehearsal/private_copy.h"

namespace embedded::tools {

// One run in which one call of the first run failed.
struct FaultRun {
    CallOfRun call;
    bool isReached = true;  // whether the call was made at all
    RunOutcome outcome;

    // The command ended as if nothing had happened.
    bool IsSwallowed() const { return isReached && outcome.status == 0; }
};

// Runs `run` for each of the calls, as many side by side as there are processors, and returns the results in
// the order of the calls. `onDone` is called after each of them, one at a time. What `run` throws ends the
// sweep.
std::vector<FaultRun> SweepFaults(const std::vector<CallOfRun>& calls,
                                  const std::function<FaultRun(const CallOfRun&)>& run,
                                  const std::function<void()>& onDone);

}  // namespace embedded::tools
