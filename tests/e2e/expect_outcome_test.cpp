#include "tests/e2e/expect_outcome.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace e2e {
namespace {

const Case& ScanCase() {
    static const Case scan =
        ReadCases("case scans\nwords: scan\nresult: success\ncalls in session\n    KrvMediaScan\n", {}).at(0);
    return scan;
}

// A run that does what the case expects.
Outcome ScanOutcome() {
    Outcome outcome;
    outcome.standardOutput = ScanCase().standardOutput;
    outcome.standardError = ScanCase().standardError;
    outcome.exitStatus = 0;
    outcome.calls = {"KrvSessionCreate server=\".\"", "KrvMediaScan", "KrvSessionClose"};
    return outcome;
}

// The failures that a check reports.
template <typename Check>
int FailuresOf(Check check) {
    testing::TestPartResultArray failures;
    {
        testing::ScopedFakeTestPartResultReporter reporter(&failures);
        check();
    }
    return failures.size();
}

bool Accepts(const Outcome& outcome) {
    return FailuresOf([&] { ExpectOutcome(ScanCase(), outcome); }) == 0;
}

bool AcceptsCalls(const std::vector<std::string>& calls) {
    Outcome outcome = ScanOutcome();
    outcome.calls = calls;
    return Accepts(outcome);
}

TEST(ExpectOutcome, AcceptsTheExpectedRunOnly) {
    EXPECT_TRUE(Accepts(ScanOutcome()));
    Outcome outcome = ScanOutcome();
    outcome.standardOutput.pop_back();
    EXPECT_FALSE(Accepts(outcome));
    outcome = ScanOutcome();
    outcome.standardError += "more";
    EXPECT_FALSE(Accepts(outcome));
    outcome = ScanOutcome();
    outcome.exitStatus = 1;
    EXPECT_FALSE(Accepts(outcome));
    outcome = ScanOutcome();
    outcome.timedOut = true;
    EXPECT_FALSE(Accepts(outcome));
}

TEST(ExpectOutcome, NoticesACallOfTheSessionThatIsMissingDoubledOrMisplaced) {
    const std::string create = ScanOutcome().calls.front();
    EXPECT_FALSE(AcceptsCalls({}));
    EXPECT_FALSE(AcceptsCalls({"KrvMediaScan", "KrvSessionClose"}));
    EXPECT_FALSE(AcceptsCalls({create, "KrvMediaScan"}));
    EXPECT_FALSE(AcceptsCalls({create, create, "KrvMediaScan", "KrvSessionClose"}));
    EXPECT_FALSE(AcceptsCalls({create, "KrvMediaScan", "KrvSessionClose", "KrvSessionClose"}));
    EXPECT_FALSE(AcceptsCalls({"KrvMediaScan", create, "KrvSessionClose"}));
    EXPECT_FALSE(AcceptsCalls({create, "KrvSessionClose", "KrvMediaScan"}));
    EXPECT_FALSE(AcceptsCalls({"KrvSessionCreate server=\"other\"", "KrvMediaScan", "KrvSessionClose"}));
}

// Of cases that compare no calls, too.
TEST(ExpectCleanCalls, AsksForOneSessionThatIsOpenedFirstAndClosedLast) {
    const auto accepts = [](const std::vector<std::string>& calls) {
        Outcome outcome;
        outcome.calls = calls;
        return FailuresOf([&] { ExpectCleanCalls(outcome); }) == 0;
    };
    const std::string create = "KrvSessionCreate server=\".\"";
    EXPECT_TRUE(accepts({}));
    EXPECT_TRUE(accepts({create, "KrvMediaScan", "KrvSessionClose"}));
    EXPECT_TRUE(accepts({"KrvServiceStart server=\".\"", "KrvSessionClose"}));
    EXPECT_FALSE(accepts({create, "KrvMediaScan"}));
    EXPECT_FALSE(accepts({create, create, "KrvSessionClose"}));
    EXPECT_FALSE(accepts({"KrvMediaScan", create, "KrvSessionClose"}));
    EXPECT_FALSE(accepts({create, "KrvSessionClose", "KrvMediaScan"}));
    EXPECT_FALSE(accepts({create, "KrvSessionClose", "KrvSessionClose"}));
    EXPECT_FALSE(accepts({create, "ERROR KrvMediaScan: size", "KrvSessionClose"}));
}

TEST(OnScreen, LeavesShortLinesAsTheyAre) {
    EXPECT_EQ(AsOnScreen("ab\n\ncd", 10), "ab\n\ncd");
}

TEST(OnScreen, BreaksWhereTheRowIsFull) {
    EXPECT_EQ(AsOnScreen("abcdefgh\n", 5), "abcde\nfgh\n");
}

TEST(OnScreen, KeepsALineThatJustFillsItsRow) {
    EXPECT_EQ(AsOnScreen("abcde\nf\n", 5), "abcde\nf\n");
}

TEST(OnScreen, ShowsATabAsBlanksUpToTheNextStop) {
    EXPECT_EQ(AsOnScreen("\ta\nabc\td\n12345678\t9\n", 40), "        a\nabc     d\n12345678        9\n");
    EXPECT_EQ(AsOnScreen("12345678\t9\n", 10), "12345678\n9\n");
}

TEST(OnScreen, HidesBlanksAtTheEndOfARow) {
    EXPECT_EQ(AsOnScreen("a  \n   \nabc   def\n", 5), "a\n\nabc\n def\n");
}

}  // namespace
}  // namespace e2e
