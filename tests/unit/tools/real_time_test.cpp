#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

class KrvsimRealTime : public ToolFixture {
  protected:
    void SetUp() override {
        Done({"init"});
        m_profile = WriteFile("fast.toml", "format = 1\nmove = 0.2\n");
    }

    template <typename Work>
    static milliseconds TimeOf(const Work& work) {
        const auto start = Clock::now();
        work();
        return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
    }

    std::string m_profile;
};

TEST_F(KrvsimRealTime, IsOffUntilItIsSwitchedOn) {
    EXPECT_EQ(Done({"real-time"}), "Calls to server \".\" take no time.\n");
    EXPECT_EQ(Done({"real-time", "--on"}), "Calls to server \".\" take as long as on real jukeboxes.\n");
    EXPECT_EQ(Done({"real-time"}), "Calls to server \".\" take as long as on real jukeboxes.\n");
    EXPECT_EQ(Done({"real-time", "--off"}), "Calls to server \".\" take no time.\n");
    (void)WrongUsage({"real-time", "--on", "--off"});
    EXPECT_EQ(Failed({"real-time", "--on", "--profile", "fast"}),
              "krvsim: fast: cannot be read; a profile is small, large or a file\n");
}

TEST_F(KrvsimRealTime, CallsThatHandleAMediumTakeTheirTime) {
    Done({"real-time", "--on", "--profile", m_profile});
    Client client;
    EXPECT_GE(TimeOf([&] { EXPECT_TRUE(client.Export({8, 0, 0}).ok); }), milliseconds(200));
    // The change is made, and the jukebox is free again.
    EXPECT_EQ(client.SlotState({8, 0, 0}), 3U);
    EXPECT_GE(TimeOf([&] { EXPECT_TRUE(client.Export({8, 0, 1}).ok); }), milliseconds(200));
    Done({"real-time", "--off"});
    EXPECT_LT(TimeOf([&] { EXPECT_TRUE(client.Export({8, 0, 2}).ok); }), milliseconds(200));
}

TEST_F(KrvsimRealTime, JukeboxHandlesTheCallsOfAllSessionsOneAfterTheOther) {
    Done({"real-time", "--on", "--profile", m_profile});
    Client client;
    Client other;
    EXPECT_GE(TimeOf([&] {
                  std::thread thread([&] { EXPECT_TRUE(other.Export({8, 0, 0}).ok); });
                  EXPECT_TRUE(client.Export({8, 0, 1}).ok);
                  thread.join();
              }),
              milliseconds(400));
}

}  // namespace
}  // namespace embedded_test
