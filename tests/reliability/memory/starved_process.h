#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/reliability/support/program_run.h"

namespace krvcmd::reliability {

// How a process ended that was refused memory at the lowest level, that of malloc: for the program's own
// needs, and for those of the standard library when it throws, sorts or prints.
struct StarvedRun {
    ProgramRun run;
    bool endedByItself = false;  // not by a signal
    size_t requests = 0;         // for memory, refused ones counted too
};

// Runs the program in a process of its own, on the scripted library as it is scripted now; what the
// library asks for is never refused. `firstRefused` counts from 1.
StarvedRun RunStarved(const std::vector<std::string>& words, size_t firstRefused, size_t lastRefused);

}  // namespace krvcmd::reliability
