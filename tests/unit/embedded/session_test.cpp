#include <gtest/gtest.h>

#include <string>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

class Sessions : public FarmFixture {};

TEST_F(Sessions, LocalServerGetsItsFarmOnFirstContact) {
    EXPECT_FALSE(std::filesystem::exists(m_home.LocalFarm()));
    Client client(".");
    EXPECT_TRUE(client.GetOpening().ok) << Describe(client.GetOpening());
    EXPECT_NE(client.GetSession(), 0U);
    EXPECT_TRUE(std::filesystem::exists(m_home.LocalFarm()));
    EXPECT_EQ(client.Jukeboxes(), (std::vector<uint32_t>{8, 11, 12, 14, 29, 31, 41, 52}));
}

TEST_F(Sessions, ServersOfTheHelpTextsAreThere) {
    for (const char* server : {"my_server", "MyServer", "My Server", "sales server"}) {
        Client client(server);
        EXPECT_TRUE(client.GetOpening().ok) << server << ": " << Describe(client.GetOpening());
        EXPECT_EQ(client.Jukeboxes().size(), 8U) << server;
    }
}

TEST_F(Sessions, EachServerHasAFarmOfItsOwn) {
    Client mine("my_server");
    ASSERT_TRUE(mine.RenameJukebox(8, "Renamed").ok);
    Client other("MyServer");
    JukeboxRecord record{};
    ASSERT_TRUE(other.Jukebox(8, record).ok);
    EXPECT_STREQ(record.name, "MyBox");
}

TEST_F(Sessions, UnknownServerIsRefusedByItsName) {
    for (const char* server : {"nowhere", "..", "../server", "My server", "a/b", "%2e", "server-%2e"}) {
        Client client(server);
        EXPECT_FALSE(client.GetOpening().ok) << server;
        EXPECT_EQ(client.GetOpening().code, 1010);
        EXPECT_EQ(client.GetOpening().text, "Server \"" + std::string(server) + "\" is not known.");
        EXPECT_EQ(client.GetSession(), 0U);
    }
    EXPECT_TRUE(std::filesystem::is_empty(m_home.GetFolder()));
}

TEST_F(Sessions, ServerNameWithoutOrWithTooManyBytesIsRefused) {
    Client empty("");
    EXPECT_EQ(Describe(empty.GetOpening()),
              "1012: Server name \"\" is not valid: it has 0 bytes, 1 to 64 are allowed.");
    const Client longest(std::string(64, 'x'));
    EXPECT_EQ(longest.GetOpening().code, 1010);
    const Client tooLong(std::string(65, 'x'));
    EXPECT_EQ(Describe(tooLong.GetOpening()), "1012: Server name \"" + std::string(64, 'x') +
                                                  "\" is not valid: it has 65 bytes, 1 to 64 are allowed.");
}

TEST_F(Sessions, ClosedSessionRefusesEverything) {
    Client client;
    const KrvSession session = client.GetSession();
    EXPECT_TRUE(client.Close().ok);
    Context context(session);
    uint32_t next = 0;
    const Outcome outcome = context.Result(KrvGetNextVolume(context.Get(), 0, &next));
    EXPECT_EQ(Describe(outcome), "1001: Session " + std::to_string(session) + " does not exist.");
    Context again(session);
    EXPECT_EQ(again.Result(KrvSessionClose(again.Get())).code, 1001);
}

TEST_F(Sessions, CloseWithoutASessionFailsPolitely) {
    Context context(0);
    EXPECT_EQ(Describe(context.Result(KrvSessionClose(context.Get()))), "1001: Session 0 does not exist.");
}

TEST_F(Sessions, SeveralSessionsOfOneProcessLiveSideBySide) {
    Client first;
    Client second;
    EXPECT_NE(first.GetSession(), second.GetSession());
    EXPECT_TRUE(first.Close().ok);
    EXPECT_EQ(second.Jukeboxes().size(), 8U);
}

TEST_F(Sessions, OneSessionSeesAtOnceWhatAnotherHasDone) {
    Client looking;
    Client acting;
    EXPECT_EQ(looking.SlotState({8, 0, 0}), 4U);
    ASSERT_TRUE(acting.Export({8, 0, 0}).ok);
    EXPECT_EQ(looking.SlotState({8, 0, 0}), 3U);
}

class Service : public FarmFixture {};

TEST_F(Service, StoppedServiceRefusesSessionsAndOpenOnes) {
    Client open;
    Client stopping;
    ASSERT_TRUE(stopping.StopService().ok);
    const Client refused;
    EXPECT_EQ(Describe(refused.GetOpening()), "1011: The service on server \".\" is stopped.");
    JukeboxRecord record{};
    EXPECT_EQ(open.Jukebox(8, record).code, 1011);
    EXPECT_EQ(open.RenameJukebox(8, "x").code, 1011);
    EXPECT_TRUE(open.Close().ok);
}

TEST_F(Service, StopOfOneServerLeavesTheOthersRunning) {
    Client stopping("my_server");
    ASSERT_TRUE(stopping.StopService().ok);
    const Client local(".");
    EXPECT_TRUE(local.GetOpening().ok);
}

TEST_F(Service, StartNeedsNoSessionAndIsFineWhenItRuns) {
    EXPECT_TRUE(StartService(".").ok);
    Client stopping;
    ASSERT_TRUE(stopping.StopService().ok);
    EXPECT_TRUE(StartService(".").ok);
    const Client after;
    EXPECT_TRUE(after.GetOpening().ok);
}

TEST_F(Service, StartOfARunningServiceKeepsItsSessions) {
    Client open;
    ASSERT_TRUE(StartService(".").ok);
    EXPECT_EQ(open.Jukeboxes().size(), 8U);
}

TEST_F(Service, StartOfAnUnknownServerIsRefused) {
    EXPECT_EQ(Describe(StartService("nowhere")), "1010: Server \"nowhere\" is not known.");
}

TEST_F(Service, RestartEndsTheSessionsBeforeIt) {
    Client open;
    Client restarting;
    ASSERT_TRUE(restarting.RestartService().ok);
    JukeboxRecord record{};
    EXPECT_EQ(Describe(open.Jukebox(8, record)),
              "1002: The session with server \".\" ended when the service was started again.");
    EXPECT_EQ(restarting.Export({8, 0, 0}).code, 1002);
    Client after;
    EXPECT_TRUE(after.Export({8, 0, 0}).ok);
}

}  // namespace
}  // namespace embedded_test
