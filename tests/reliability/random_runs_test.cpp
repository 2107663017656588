// Not on Windows: standard streams are caught by means of POSIX; nothing tested here depends on the system.

// Random command lines on random farms with random nonsense in the answers. support/seeds.h tells how to try
// others than the ordinary ones.
#include <gtest/gtest.h>

#include <string>

#include "krvcmd/frontend/parsing/parser.h"
#include "tests/reliability/support/comparison.h"
#include "tests/reliability/support/general_rules.h"
#include "tests/reliability/support/interrupt_switch.h"
#include "tests/reliability/support/random_words.h"
#include "tests/reliability/support/random_world.h"
#include "tests/reliability/support/seeds.h"

namespace krvcmd::reliability {
namespace {

TEST(RandomRuns, CallAndEndAsDocumented) {
    ProgramRunner program;
    const Seeds seeds = SeedsToTry(10'000);
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        Dice dice(seed);
        const Order order = RandomOrder(dice);
        const std::vector<std::string> words = Words(order, dice);
        const auto script = [seed](krvfake::FakeLibrary& library) { ScriptRandomWorld(library, seed); };
        ASSERT_EQ(DifferenceFromModel(program, order, words, script), "")
            << Spelt(words) << "\nwith the seed " << seed;
    }
}

bool CanBeParsed(const std::vector<std::string>& words) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    ParameterList line;
    return ParseCommandLine(arguments, line).IsOk() && line.command != nullptr;
}

TEST(RandomRuns, NeverCallTheLibraryForACommandLineThatIsNone) {
    ProgramRunner program;
    const Seeds seeds = SeedsToTry(10'000);
    size_t refused = 0;
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        Dice dice(seed);
        const std::vector<std::string> words = RandomWords(dice);
        krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
        library.Reset();
        ScriptRandomWorld(library, seed);
        // Ranges may be long.
        InterruptAfterQuestions(500);
        const ProgramRun run = program.Run(words);
        ForgetInterrupt();
        ASSERT_EQ(BrokenRules(run), "") << Spelt(words) << "\nwith the seed " << seed;
        if (CanBeParsed(words)) continue;
        ++refused;
        ASSERT_TRUE(run.calls.empty()) << Spelt(words) << "\nwith the seed " << seed;
        ASSERT_EQ(run.errorOutput,
                  "Error: Invalid command line parameter. Specify help to get further information.\n");
        ASSERT_FALSE(run.output.empty()) << "without a command there is no quiet";
    }
    // Both kinds are tried.
    EXPECT_GT(refused, (seeds.end - seeds.first) / 10);
    EXPECT_LT(refused, (seeds.end - seeds.first) / 10 * 9);
}

}  // namespace

}  // namespace krvcmd::reliability
