// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {
namespace {

// The operator ends a command at each check for an interruption in turn.
class Interruption : public testing::TestWithParam<NamedCommand> {
  protected:
    ProgramRun Run() {
        krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
        library.Reset();
        BuildSmallFarm(library.GetFarm());
        return m_program.Run(Words(GetParam().command));
    }

    ProgramRun RunInterrupted(size_t checks) {
        InterruptAfterChecks(checks);
        ProgramRun run = Run();
        CancelInterrupt();
        return run;
    }

    ProgramRunner m_program;
};

// The calls are the first ones of the whole run, followed by the session's end.
bool AreTheFirstOf(const std::vector<std::string>& calls, const std::vector<std::string>& wholeRun) {
    const size_t before = calls.size() - 1;
    return calls.back() == "KrvSessionClose" && before < wholeRun.size() &&
           std::equal(wholeRun.begin(), wholeRun.begin() + static_cast<ptrdiff_t>(before), calls.begin());
}

TEST_P(Interruption, EndsTheSessionAndIsTheResult) {
    const ProgramRun whole = Run();
    size_t previousCalls = 0;
    for (size_t checks = 1;; ++checks) {
        ASSERT_LT(checks, 10'000U);
        const ProgramRun run = RunInterrupted(checks);
        if (run.errorOutput == whole.errorOutput) {
            EXPECT_EQ(run.calls, whole.calls);
            EXPECT_EQ(run.output, whole.output);
            break;
        }
        ASSERT_EQ(run.exitStatus, 4) << checks;
        EXPECT_EQ(run.errorOutput, "OS error 4: Interrupted system call\n");
        ASSERT_FALSE(run.calls.empty()) << checks;
        EXPECT_TRUE(AreTheFirstOf(run.calls, whole.calls)) << checks;
        EXPECT_GE(run.calls.size(), previousCalls);
        previousCalls = run.calls.size();
    }
    // The last interrupted run has all calls of the whole run.
    EXPECT_EQ(previousCalls, whole.calls.size());
}

TEST_P(Interruption, OfAQueryShowsTheRowsGatheredSoFar) {
    if (GetParam().command.verb != Verb::Query || !GetParam().command.notable) return;
    const ProgramRun whole = Run();
    size_t longest = 0;
    for (size_t checks = 1; checks < 10'000; ++checks) {
        const ProgramRun run = RunInterrupted(checks);
        if (run.errorOutput == whole.errorOutput) break;
        const auto rows = static_cast<size_t>(std::count(run.output.begin(), run.output.end(), '\n'));
        EXPECT_GE(rows, longest) << checks;
        longest = rows;
    }
    EXPECT_EQ(longest, static_cast<size_t>(std::count(whole.output.begin(), whole.output.end(), '\n')));
}

INSTANTIATE_TEST_SUITE_P(Orders, Interruption, testing::ValuesIn(RepresentativeCommands()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace krvcmd::reliability
