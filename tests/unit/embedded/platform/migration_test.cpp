// Not on Windows: the second processes are forks; nothing in the way forward depends on the system.

// Farms of earlier releases: what they hold is kept, and all of the way forward is gone or none.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/unit/embedded/platform/child_process.h"
#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

class Migration : public FarmFixture {
  protected:
    void SetUp() override {
        std::stringstream script;
        script << std::ifstream(KRVSIM_VERSION_1_FARM, std::ios::binary).rdbuf();
        ASSERT_FALSE(script.str().empty());
        ChangeFarm(m_farm, script.str());
        ASSERT_EQ(ReadNumber(m_farm, "PRAGMA user_version"), 1);
    }

    const std::filesystem::path m_farm = m_home.GetFolder() / "server-old.db";
};

TEST_F(Migration, FarmOfTheFirstReleaseKeepsAllThatItHolds) {
    Client client("old");
    ASSERT_TRUE(client.GetOpening().ok) << Describe(client.GetOpening());
    EXPECT_EQ(ReadNumber(m_farm, "PRAGMA user_version"), 5);
    EXPECT_EQ(client.Volumes(), (std::vector<uint32_t>{7, 8, 9}));
    EXPECT_EQ(client.LabelOf(7), "Sales 2004");
    std::vector<std::string> aspects;
    ASSERT_TRUE(client.Aspects(7, aspects).ok);
    EXPECT_EQ(aspects, std::vector<std::string>{"sales\\2004"});
    EXPECT_EQ(client.VolumeOf(7).state, 0U);
    EXPECT_EQ(client.VolumeOf(8).state, 3U);
    EXPECT_EQ(client.VolumeOf(9).state, 2U);
    // Only the state of volume 8 is another than that which its place tells.
    EXPECT_EQ(ReadText(m_farm, "SELECT group_concat(volume || '=' || state) FROM odd_state"), "8=3");
}

TEST_F(Migration, FarmOfTheFirstReleaseCanBeActedOn) {
    Client client("old");
    ASSERT_TRUE(client.Export({3, 0, 1}).ok);
    EXPECT_EQ(client.VolumeOf(8).state, 2U);
    EXPECT_EQ(ReadNumber(m_farm, "SELECT count(*) FROM odd_state"), 0);
}

TEST_F(Migration, FarmOfTheThirdVersionKeepsItsTimesAndStaysSimulated) {
    ChangeFarm(m_farm, R"sql(
        CREATE TABLE odd_state (volume INTEGER PRIMARY KEY, state INTEGER NOT NULL) STRICT;
        ALTER TABLE journal ADD COLUMN medium_type INTEGER;
        ALTER TABLE journal ADD COLUMN medium_slot INTEGER;
        ALTER TABLE journal ADD COLUMN medium_sides INTEGER;
        ALTER TABLE journal ADD COLUMN certified INTEGER;
        ALTER TABLE server ADD COLUMN real_time TEXT NOT NULL DEFAULT '';
        CREATE TABLE busy_jukebox (jukebox INTEGER PRIMARY KEY, until INTEGER NOT NULL) STRICT;
        INSERT INTO busy_jukebox VALUES (3, 17);
        UPDATE server SET real_time = 'default';
        PRAGMA user_version = 3;
    )sql");
    Client client("old");
    ASSERT_TRUE(client.GetOpening().ok) << Describe(client.GetOpening());
    EXPECT_EQ(ReadNumber(m_farm, "PRAGMA user_version"), 5);
    EXPECT_EQ(client.Volumes(), (std::vector<uint32_t>{7, 8, 9}));
    EXPECT_EQ(ReadText(m_farm, "SELECT real_time FROM server"), "default");
    EXPECT_EQ(ReadNumber(m_farm, "SELECT until FROM busy_jukebox WHERE jukebox = 3"), 17);
    EXPECT_EQ(ReadNumber(m_farm, "SELECT kind FROM server"), 0);
    EXPECT_EQ(ReadNumber(m_farm, "SELECT count(*) FROM changer"), 0);
}

TEST_F(Migration, FarmOfTheFourthVersionKeepsTheMoveLimitsThatItWasGiven) {
    ASSERT_TRUE(Client("old").GetOpening().ok);
    ChangeFarm(m_farm, R"sql(
        DROP TABLE time_limit;
        ALTER TABLE changer ADD COLUMN move_limit INTEGER NOT NULL DEFAULT 300;
        INSERT INTO changer (jukebox, address, serial, credentials, reservation_key, move_limit)
        VALUES (3, '/dev/sg3', '', '', 1, 300), (4, '/dev/sg4', '', '', 1, 600);
        PRAGMA user_version = 4;
    )sql");
    ASSERT_TRUE(Client("old").GetOpening().ok);
    EXPECT_EQ(ReadNumber(m_farm, "PRAGMA user_version"), 5);
    EXPECT_EQ(
        ReadText(m_farm, "SELECT group_concat(jukebox || ' ' || name || ' ' || seconds) FROM time_limit"),
        "4 move 600");
}

TEST_F(Migration, ManyAtOnceBringAFarmForwardOnce) {
    std::vector<std::unique_ptr<ChildProcess>> children;
    children.reserve(8);
    for (int process = 0; process < 8; ++process) {
        children.push_back(std::make_unique<ChildProcess>([] {
            Client client("old");
            return client.GetOpening().ok && client.Volumes().size() == 3 ? 0 : 1;
        }));
    }
    for (auto& child : children)
        EXPECT_EQ(child->Wait(), 0);
    EXPECT_EQ(ReadNumber(m_farm, "PRAGMA user_version"), 5);
    EXPECT_EQ(ReadNumber(m_farm, "SELECT count(*) FROM odd_state"), 1);
}

TEST_F(Migration, FarmThatCannotBeBroughtForwardStaysAsItIs) {
    ChangeFarm(m_farm, "CREATE TABLE odd_state (in_the_way INTEGER)");
    {
        const Client client("old");
        EXPECT_EQ(client.GetOpening().code, 1067) << Describe(client.GetOpening());
        EXPECT_NE(client.GetOpening().text.find(m_farm.string()), std::string::npos);
    }
    EXPECT_EQ(ReadNumber(m_farm, "PRAGMA user_version"), 1);
    ChangeFarm(m_farm, "DROP TABLE odd_state");
    EXPECT_TRUE(Client("old").GetOpening().ok);
}

}  // namespace
}  // namespace embedded_test
