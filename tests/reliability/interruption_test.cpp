// Not on Windows: standard streams are caught by means of POSIX; nothing tested here depends on the system.

// The operator ends a command, at every moment at which the program looks for that.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/interrupt_switch.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/representative_orders.h"
#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {
namespace {

class Interruption : public testing::TestWithParam<NamedOrder> {
  protected:
    ProgramRun Run() {
        krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
        library.Reset();
        BuildSmallFarm(library.GetFarm());
        return m_program.Run(Words(GetParam().order));
    }

    ProgramRun RunInterrupted(size_t questions) {
        InterruptAfterQuestions(questions);
        ProgramRun run = Run();
        ForgetInterrupt();
        return run;
    }

    ProgramRunner m_program;
};

// The calls before the interruption are those of the whole run; none follows but the session's end.
bool AreTheFirstOf(const std::vector<std::string>& calls, const std::vector<std::string>& wholeRun) {
    const size_t before = calls.size() - 1;
    return calls.back() == "KrvSessionClose" && before < wholeRun.size() &&
           std::equal(wholeRun.begin(), wholeRun.begin() + static_cast<ptrdiff_t>(before), calls.begin());
}

TEST_P(Interruption, MakesNoFurtherCallButTheSessionsEndAndIsTheResult) {
    const ProgramRun whole = Run();
    size_t previousCalls = 0;
    for (size_t questions = 1;; ++questions) {
        ASSERT_LT(questions, 10'000U);
        const ProgramRun run = RunInterrupted(questions);
        if (run.errorOutput == whole.errorOutput) {
            EXPECT_EQ(run.calls, whole.calls);
            EXPECT_EQ(run.output, whole.output);
            break;
        }
        ASSERT_EQ(run.exitStatus, 4) << questions;
        EXPECT_EQ(run.errorOutput, "OS error 4: Interrupted system call\n");
        ASSERT_FALSE(run.calls.empty()) << questions;
        EXPECT_TRUE(AreTheFirstOf(run.calls, whole.calls)) << questions;
        EXPECT_GE(run.calls.size(), previousCalls);
        previousCalls = run.calls.size();
    }
    // At the end nothing is missing any more.
    EXPECT_EQ(previousCalls, whole.calls.size());
}

TEST_P(Interruption, OfAQueryLeavesTheRowsGatheredSoFar) {
    if (GetParam().order.verb != Verb::Query || !GetParam().order.notable) return;
    const ProgramRun whole = Run();
    size_t longest = 0;
    for (size_t questions = 1; questions < 10'000; ++questions) {
        const ProgramRun run = RunInterrupted(questions);
        if (run.errorOutput == whole.errorOutput) break;
        const auto rows = static_cast<size_t>(std::count(run.output.begin(), run.output.end(), '\n'));
        EXPECT_GE(rows, longest) << questions;
        longest = rows;
    }
    EXPECT_EQ(longest, static_cast<size_t>(std::count(whole.output.begin(), whole.output.end(), '\n')));
}

INSTANTIATE_TEST_SUITE_P(Orders, Interruption, testing::ValuesIn(RepresentativeOrders()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace

}  // namespace krvcmd::reliability
