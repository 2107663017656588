#include <gtest/gtest.h>

#include <fstream>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimSnapshot : public ToolFixture {
  protected:
    void SetUp() override { Done({"init"}); }

    void SpoilTheFarm() const {
        std::fstream file(m_home.LocalFarm(), std::ios::binary | std::ios::in | std::ios::out);
        constexpr std::streamoff kBehindTheHeader = 100;
        file.seekp(kBehindTheHeader);
        file << std::string(8192, '\x55');
    }
};

TEST_F(KrvsimSnapshot, RestoreBringsTheFarmBack) {
    const std::string before = Done({"dump"});
    EXPECT_EQ(Done({"snapshot", "a b@c"}), "Made snapshot \"a b@c\" of server \".\".\n");
    {
        Client client;
        EXPECT_TRUE(client.Export({8, 0, 2}).ok);
    }
    EXPECT_NE(Done({"dump"}), before);
    EXPECT_EQ(Done({"restore", "a b@c"}), "Restored snapshot \"a b@c\" of server \".\".\n");
    EXPECT_EQ(Done({"dump"}), before);
    Done({"check"});
}

TEST_F(KrvsimSnapshot, RestoreEndsSessionsWithTheOldFarm) {
    Done({"snapshot", "one"});
    Client client;
    EXPECT_TRUE(client.Export({8, 0, 2}).ok);
    Done({"restore", "one"});
    EXPECT_EQ(client.Export({8, 0, 3}).code, 1002);
    Client after;
    EXPECT_EQ(after.SlotState({8, 0, 2}), 4U);
}

TEST_F(KrvsimSnapshot, SnapshotsOfServersAreTheirOwn) {
    Done({"snapshot", "one"});
    Done({"snapshot", "two"});
    Done({"init", "--server", "other"});
    EXPECT_EQ(Done({"snapshots", "--server", "other"}), "Server \"other\" has no snapshots.\n");
    const std::string list = Done({"snapshots"});
    EXPECT_NE(list.find("\none "), std::string::npos) << list;
    EXPECT_NE(list.find("\ntwo "), std::string::npos) << list;
    EXPECT_EQ(Done({"servers"}).find("one"), std::string::npos) << "a snapshot is no server";
    EXPECT_EQ(Done({"remove", "one"}), "Removed snapshot \"one\" of server \".\".\n");
    EXPECT_EQ(Failed({"restore", "one"}), "krvsim: there is no snapshot \"one\" of server \".\"\n");
}

TEST_F(KrvsimSnapshot, ExistingOneIsReplacedOnRequestOnly) {
    Done({"snapshot", "one"});
    EXPECT_EQ(Failed({"snapshot", "one"}),
              "krvsim: there is a snapshot \"one\" of server \".\" already (--force replaces it)\n");
    Done({"snapshot", "one", "--force"});
}

TEST_F(KrvsimSnapshot, IsTakenWhileOthersUseTheFarm) {
    Client client;
    EXPECT_TRUE(client.Export({8, 0, 2}).ok);
    Done({"snapshot", "one"});
    EXPECT_TRUE(client.Export({8, 0, 3}).ok);
    EXPECT_NE(RunKrvsim({"diff", "@one"}).out.find("1 change: 1 exported."), std::string::npos);
}

TEST_F(KrvsimSnapshot, LeadsOutOfADamagedFarmWhoseErrorNamesIt) {
    const std::string before = Done({"dump"});
    Done({"snapshot", "one"});
    SpoilTheFarm();
    const std::string error = Failed({"dump"});
    EXPECT_NE(error.find("krvsim restore or krvsim remove --farm helps"), std::string::npos) << error;
    const ToolResult result = RunKrvsim({"restore", "one"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(Done({"dump"}), before);
    SpoilTheFarm();
    EXPECT_EQ(Done({"remove", "--farm"}), "Removed the farm of server \".\".\n");
    EXPECT_EQ(Done({"dump"}), before) << "the demonstration farm is made again";
}

TEST_F(KrvsimSnapshot, FarmInUseIsNotRemoved) {
    {
        const Client client;
        EXPECT_EQ(RunKrvsim({"remove", "--farm"}).status, 1);
    }
    Done({"remove", "--farm"});
}

TEST_F(KrvsimSnapshot, RemoveWantsASnapshotOrTheFarm) {
    const std::string error = "krvsim: name a snapshot, or use --farm to remove the farm itself\n";
    EXPECT_EQ(WrongUsage({"remove"}), error);
    EXPECT_EQ(WrongUsage({"remove", "one", "--farm"}), error);
}

}  // namespace
}  // namespace embedded_test
