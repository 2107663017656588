#pragma once

#include <string>
#include <vector>

#include "tests/reliability/support/program_run.h"

namespace krvcmd::reliability {

// What is wrong with a run that was refused memory, in words; empty when nothing is. `whole` is the run of
// the same command line with all memory. A good run breaks no rule, and either ends with system error 12
// after making the first of the whole run's calls, or ends like the whole run and shows the same but for one
// cell of its table, or goes on after a volume whose aspects or locations could not be read.
std::string OutOfMemoryProblem(const std::vector<std::string>& words, const ProgramRun& run,
                               const ProgramRun& whole);

}  // namespace krvcmd::reliability
