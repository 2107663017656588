#pragma once

#include <string>
#include <vector>

#include "tests/reliability/support/program_run.h"

namespace krvcmd::reliability {

// What is wrong with a run that was refused memory; `whole` is the same command line with all memory. Empty:
// nothing is. The general rules hold, and either the run ends with system error 12 and has made the first
// of the whole run's calls, or it ends as the whole run and shows the same but for one cell of its table.
std::string WhatIsWrong(const std::vector<std::string>& words, const ProgramRun& run,
                        const ProgramRun& whole);

}  // namespace krvcmd::reliability
