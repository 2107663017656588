// Random command lines on random farms with random nonsense in the answers.
//
//   KRVCMD_RELIABILITY_SEED   where the seeds begin ("time" for the clock), 1 when not given
//   KRVCMD_RELIABILITY_RUNS   how many runs
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

#include "tests/reliability/support/comparison.h"
#include "tests/reliability/support/random_world.h"

namespace krvcmd::reliability {

namespace {

std::uint64_t FirstSeed() {
    const char* const wanted = std::getenv("KRVCMD_RELIABILITY_SEED");
    if (wanted == nullptr) return 1;
    if (std::string(wanted) != "time") return std::strtoull(wanted, nullptr, 10);
    return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

std::uint64_t RunCount(std::uint64_t ordinarily) {
    const char* const wanted = std::getenv("KRVCMD_RELIABILITY_RUNS");
    return wanted == nullptr ? ordinarily : std::strtoull(wanted, nullptr, 10);
}

TEST(RandomRuns, CallAndEndAsDocumented) {
    ProgramRunner program;
    const std::uint64_t first = FirstSeed();
    const std::uint64_t count = RunCount(10'000);
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        Dice dice(seed);
        const Order order = RandomOrder(dice);
        const std::vector<std::string> words = Words(order, dice);
        const auto script = [seed](krvfake::FakeLibrary& library) { ScriptRandomWorld(library, seed); };
        ASSERT_EQ(DifferenceFromModel(program, order, words, script), "")
            << Spelt(words) << "\nwith the seed " << seed;
    }
}

}  // namespace

}  // namespace krvcmd::reliability
