#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Outcome;

class ServiceCommandTest : public test::CommandTest {
  protected:
    // Status and all calls, those for the session included.
    Calls Done(const test::Words& words) {
        GetBannerFlags() = {false, true};
        Outcome outcome = Run(words);
        outcome.calls.insert(outcome.calls.begin(), outcome.status);
        return outcome.calls;
    }
};

TEST_F(ServiceCommandTest, StartsWithoutASessionButClosesOne) {
    EXPECT_EQ(Done({"service", "start"}), (Calls{"OK", "KrvServiceStart server=\".\"", "KrvSessionClose"}));
}

TEST_F(ServiceCommandTest, StartsTheServiceOfTheServer) {
    EXPECT_EQ(Done({"server=my_server", "service", "start"}),
              (Calls{"OK", "KrvServiceStart server=\"my_server\"", "KrvSessionClose"}));
    EXPECT_EQ(Done({"server=", "service", "start"}),
              (Calls{"OK", "KrvServiceStart server=\"\"", "KrvSessionClose"}));
}

TEST_F(ServiceCommandTest, StopsAndRestartsThroughASession) {
    EXPECT_EQ(Done({"service", "stop"}),
              (Calls{"OK", "KrvSessionCreate server=\".\"", "KrvServiceStop", "KrvSessionClose"}));
    EXPECT_EQ(Done({"server=my_server", "service", "restart"}),
              (Calls{"OK", "KrvSessionCreate server=\"my_server\"", "KrvServiceRestart", "KrvSessionClose"}));
}

TEST_F(ServiceCommandTest, NeedsExactlyOneWordBeforeAnyContact) {
    const test::Words rows[] = {
        {"service"},
        {"service", "start", "stop"},
        {"service", "start", "restart"},
        {"service", "stop", "restart"},
        {"service", "start", "stop", "restart"},
    };
    for (const test::Words& words : rows)
        EXPECT_EQ(Done(words), (Calls{"error 22"})) << words.size();
}

TEST_F(ServiceCommandTest, AcceptsTheSameWordTwice) {
    EXPECT_EQ(Done({"service", "start", "start"}),
              (Calls{"OK", "KrvServiceStart server=\".\"", "KrvSessionClose"}));
}

TEST_F(ServiceCommandTest, ReportsTheSessionErrorAndMakesNoServiceCall) {
    Fake().FailCall("KrvSessionCreate", Occurrence::Every(), {1002, "not running"});
    const std::string error = "service error 1002: not running";
    EXPECT_EQ(Done({"service", "stop"}), (Calls{error, "KrvSessionCreate server=\".\"", "KrvSessionClose"}));
    EXPECT_EQ(Done({"service", "restart"}),
              (Calls{error, "KrvSessionCreate server=\".\"", "KrvSessionClose"}));
    EXPECT_EQ(Done({"service", "start"}).front(), "OK");
}

TEST_F(ServiceCommandTest, ReportsTheErrorOfEachServiceCall) {
    for (const char* call : {"KrvServiceStart", "KrvServiceStop", "KrvServiceRestart"}) {
        Fake().FailCall(call, Occurrence::Every(), {9, "no"});
    }
    for (const char* word : {"start", "stop", "restart"}) {
        const Calls done = Done({"service", word});
        EXPECT_EQ(done.front(), "service error 9: no") << word;
        EXPECT_EQ(done.back(), "KrvSessionClose") << word;
    }
}

TEST_F(ServiceCommandTest, IgnoresAFailureToClose) {
    Fake().FailCall("KrvSessionClose", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Done({"service", "start"}).front(), "OK");
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
