#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/common/streams.h"
#include "tools/rehearsal/fault_sweep.h"

namespace embedded::tools {

// The code of a call that fails, unless another one is asked for: none that krvcmd or the service gives a
// meaning to.
inline constexpr int32_t kSweepCode = 99;

struct EachFault {
    std::string function;  // only its calls; empty = all
    int32_t code = kSweepCode;
};

// What every run starts with.
struct SweepStart {
    std::string server;
    std::filesystem::path library;   // the simulated one
    std::filesystem::path baseline;  // the file of the farm
    const Farm& farm;                // what is in it; the caller's
    std::vector<std::string> words;
    Isolation isolation = Isolation::ClosedOff;
};

// Repeats the run for each of its calls, with that call failing. `first` is the farm after the run.
std::vector<FaultRun> RunEachFault(const EachFault& options, const SweepStart& start, Database& first,
                                   const Streams& streams);

// A table of the runs, and the failures that the command did not notice.
void WriteFaultRuns(std::ostream& out, const std::vector<FaultRun>& runs);

}  // namespace embedded::tools
