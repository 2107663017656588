#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Outcome;
using test::Words;

const std::string kOpen = "KrvSessionCreate server=\".\"";
const std::string kClose = "KrvSessionClose";

class ServiceCommandTest : public test::CommandTest {
  protected:
    // Status and all calls, those for the session included.
    Calls StatusAndAllCalls(const Words& words) {
        GetBannerFlags() = {false, true};
        Outcome outcome = Run(words);
        outcome.calls.insert(outcome.calls.begin(), outcome.status);
        return outcome.calls;
    }
};

TEST_F(ServiceCommandTest, StartsWithoutASessionAndStopsAndRestartsThroughOne) {
    struct Row {
        Words words;
        Calls expected;
    };
    const Row rows[] = {
        {{"service", "start"}, {"OK", "KrvServiceStart server=\".\"", kClose}},
        {{"service", "start", "start"}, {"OK", "KrvServiceStart server=\".\"", kClose}},
        {{"server=x", "service", "start"}, {"OK", "KrvServiceStart server=\"x\"", kClose}},
        {{"server=", "service", "start"}, {"OK", "KrvServiceStart server=\"\"", kClose}},
        {{"service", "stop"}, {"OK", kOpen, "KrvServiceStop", kClose}},
        {{"server=x", "service", "restart"},
         {"OK", "KrvSessionCreate server=\"x\"", "KrvServiceRestart", kClose}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(StatusAndAllCalls(row.words), row.expected);
}

TEST_F(ServiceCommandTest, NeedsExactlyOneWordBeforeAnyContact) {
    const Words rows[] = {
        {"service"},
        {"service", "start", "stop"},
        {"service", "start", "restart"},
        {"service", "stop", "restart"},
        {"service", "start", "stop", "restart"},
    };
    for (const Words& words : rows)
        EXPECT_EQ(StatusAndAllCalls(words), (Calls{"error 22"})) << test::Spelled(words);
}

TEST_F(ServiceCommandTest, ReportsTheSessionErrorAndMakesNoServiceCall) {
    Fake().FailCall("KrvSessionCreate", Occurrence::Every(), {1002, "not running"});
    for (const char* word : {"stop", "restart"}) {
        EXPECT_EQ(StatusAndAllCalls({"service", word}),
                  (Calls{"service error 1002: not running", kOpen, kClose}));
    }
    EXPECT_EQ(StatusAndAllCalls({"service", "start"}).front(), "OK");
}

TEST_F(ServiceCommandTest, ReportsTheErrorOfEachServiceCallAndCloses) {
    for (const char* call : {"KrvServiceStart", "KrvServiceStop", "KrvServiceRestart", "KrvSessionClose"}) {
        Fake().FailCall(call, Occurrence::Every(), {9, "no"});
    }
    for (const char* word : {"start", "stop", "restart"}) {
        const Calls calls = StatusAndAllCalls({"service", word});
        EXPECT_EQ(calls.front(), "service error 9: no") << word;
        EXPECT_EQ(calls.back(), kClose) << word;
    }
}

TEST_F(ServiceCommandTest, PrintsTheBannerUnlessQuiet) {
    EXPECT_TRUE(Run({"service", "start"}).output.starts_with("Carvoline - command line interface\n"));
    EXPECT_FALSE(GetBannerFlags().quiet);
    GetBannerFlags() = {};
    EXPECT_EQ(Run({"quiet", "service", "start"}).output, "");
    EXPECT_TRUE(GetBannerFlags().quiet);
}

}  // namespace
}  // namespace krvcmd
