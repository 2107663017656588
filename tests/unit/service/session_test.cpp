#include "krvcmd/service/access/session.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

class SessionTest : public test::ServiceTest {};

TEST_F(SessionTest, OpensASessionOnTheServerAndKeepsItsHandle) {
    EXPECT_EQ(Text(OpenSession("sales server")), "OK");
    EXPECT_NE(GetSession(), 0U);
    EXPECT_EQ(TakeCalls(), (Calls{"KrvSessionCreate server=\"sales server\""}));
}

TEST_F(SessionTest, LeavesTheHandleAtZeroWhenNoSessionCanBeOpened) {
    Fake().FailCall("KrvSessionCreate", Occurrence::Every(), {1002, "There is no such server."});
    EXPECT_EQ(Text(OpenSession("nowhere")), "service error 1002: There is no such server.");
    EXPECT_EQ(GetSession(), 0U);
}

TEST_F(SessionTest, ClosesTheSessionOfTheHandle) {
    ASSERT_TRUE(OpenSession(".").IsOk());
    CloseSession();
    EXPECT_EQ(TakeCalls(), (Calls{"KrvSessionCreate server=\".\"", "KrvSessionClose"}));
}

TEST_F(SessionTest, ClosesWithoutASessionTooAndIgnoresAFailure) {
    Fake().FailCall("KrvSessionClose", Occurrence::Every(), {9, "no"});
    CloseSession();
    EXPECT_EQ(TakeCalls(), (Calls{"KrvSessionClose"}));
}

TEST_F(SessionTest, ControlsTheService) {
    EXPECT_EQ(Text(StartService("my_server")), "OK");
    EXPECT_EQ(Text(StopService()), "OK");
    EXPECT_EQ(Text(RestartService()), "OK");
    EXPECT_EQ(TakeCalls(),
              (Calls{"KrvServiceStart server=\"my_server\"", "KrvServiceStop", "KrvServiceRestart"}));
}

TEST_F(SessionTest, HandsOnTheErrorsOfServiceControl) {
    Fake().FailCall("*", Occurrence::Every(), {5, "x"});
    EXPECT_EQ(Text(StartService(".")), "service error 5: x");
    EXPECT_EQ(Text(StopService()), "service error 5: x");
    EXPECT_EQ(Text(RestartService()), "service error 5: x");
}

}  // namespace
}  // namespace krvcmd
