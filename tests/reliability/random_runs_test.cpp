// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gtest/gtest.h>

#include <string>

#include "krvcmd/frontend/parsing/parser.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/random_numbers.h"
#include "tests/reliability/support/random_world.h"
#include "tests/reliability/support/run_checks.h"

namespace krvcmd::reliability {
namespace {

// Random command lines on random farms with random nonsense in the answers. SeedsToTry tells how to try other
// seeds.
TEST(RandomRuns, CallAndEndLikeTheModel) {
    ProgramRunner program;
    const Seeds seeds = SeedsToTry(10'000);
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        RandomNumbers random(seed);
        const CommandSpec command = RandomCommand(random);
        const std::vector<std::string> words = Words(command, random);
        const auto script = [seed](krvfake::FakeLibrary& library) { ScriptRandomWorld(library, seed); };
        ASSERT_EQ(DifferenceFromModel(program, command, words, script), "")
            << CommandLineText(words) << "\nwith the seed " << seed;
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

TEST(RandomRuns, NeverCallTheLibraryForAnInvalidCommandLine) {
    ProgramRunner program;
    const Seeds seeds = SeedsToTry(10'000);
    size_t refused = 0;
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        RandomNumbers random(seed);
        const std::vector<std::string> words = RandomWords(random);
        krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
        library.Reset();
        ScriptRandomWorld(library, seed);
        // Long ranges would take too long.
        InterruptAfterChecks(500);
        const ProgramRun run = program.Run(words);
        CancelInterrupt();
        ASSERT_EQ(BrokenRule(run), "") << CommandLineText(words) << "\nwith the seed " << seed;
        if (CanBeParsed(words)) continue;
        ++refused;
        ASSERT_TRUE(run.calls.empty()) << CommandLineText(words) << "\nwith the seed " << seed;
        ASSERT_EQ(run.errorOutput,
                  "Error: Invalid command line parameter. Specify help to get further information.\n");
        ASSERT_FALSE(run.output.empty()) << "without a command there is no quiet";
    }
    // The seeds give both kinds.
    EXPECT_GT(refused, (seeds.end - seeds.first) / 10);
    EXPECT_LT(refused, (seeds.end - seeds.first) / 10 * 9);
}

}  // namespace
}  // namespace krvcmd::reliability
