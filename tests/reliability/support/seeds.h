#pragma once

#include <cstdint>

namespace krvcmd::reliability {

// The seeds of a test with random contents. Two environment variables change what is ordinarily tried:
//   KRVCMD_RELIABILITY_SEED   the first seed, or "time" for one that the clock gives; 1 when not given
//   KRVCMD_RELIABILITY_RUNS   how many
struct Seeds {
    uint64_t first;
    uint64_t end;  // behind the last one
};

Seeds SeedsToTry(uint64_t ordinarily);

}  // namespace krvcmd::reliability
