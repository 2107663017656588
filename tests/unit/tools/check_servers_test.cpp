#include <gtest/gtest.h>
#include <sqlite3.h>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

void ChangeFarm(const std::filesystem::path& farm, const std::string& script) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(farm.string().c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, script.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection) << "\n"
        << script;
    sqlite3_close(connection);
}

class KrvsimCheck : public ToolFixture {};

TEST_F(KrvsimCheck, DemonstrationFarmIsSound) {
    const std::string result = Done({"check"});
    EXPECT_TRUE(result.starts_with("The farm of server \".\" is sound.\n")) << result;
}

// A farm in another folder than the one that was meant looks sound, too.
TEST_F(KrvsimCheck, TellsWhichFarmAndWhichClientLibraryAreInUse) {
    std::stringstream lines(Done({"check"}));
    std::string line;
    std::getline(lines, line);
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_TRUE(line.starts_with("Farm: " + m_home.LocalFarm().string() + "; client library: ")) << line;
    EXPECT_FALSE(std::getline(lines, line)) << line;
}

struct BreachCase {
    const char* script;
    const char* breach;
};

TEST_F(KrvsimCheck, ReportsEveryBrokenRule) {
    const std::vector<BreachCase> cases = {
        {"DELETE FROM server", "the server has 0 descriptions instead of one"},
        {"UPDATE jukebox SET name = '' WHERE id = 8", "jukebox 8 has an empty name"},
        {"UPDATE jukebox SET name = printf('%52s', 'x') WHERE id = 8",
         "the name of jukebox 8 is longer than 51 bytes"},
        {"UPDATE jukebox SET drive_count = 9 WHERE id = 8", "jukebox 8 records 9 drives but has 2"},
        {"UPDATE jukebox SET magazine_count = 9 WHERE id = 8", "jukebox 8 records 9 magazines but has 1"},
        {"UPDATE jukebox SET slot_count = 9 WHERE id = 8",
         "jukebox 8 records 9 slots but its present magazines have 12"},
        {"UPDATE drive SET number = 5 WHERE jukebox = 8 AND number = 1",
         "the drive numbers of jukebox 8 have gaps"},
        {"UPDATE magazine SET first_slot = 3 WHERE jukebox = 8",
         "magazine 1 of jukebox 8 starts 3 slots after the first one instead of 0"},
        {"DELETE FROM jukebox WHERE id = 52", "magazine 1 belongs to jukebox 52, which does not exist"},
        {"DELETE FROM slot WHERE jukebox = 8 AND number = 11",
         "magazine 1 of jukebox 8 records 12 slots but has 11"},
        {"UPDATE slot SET state = 3 WHERE jukebox = 8 AND number = 0",
         "slot 1 of magazine 1 of jukebox 8 is empty but holds a medium"},
        {"UPDATE slot SET state = 4 WHERE jukebox = 8 AND number = 4",
         "slot 5 of magazine 1 of jukebox 8 is full but holds no medium"},
        {"UPDATE medium SET slot = 90 WHERE place = 1 AND jukebox = 8 AND slot = 0",
         "is in slot 91 of magazine 1 of jukebox 8, which does not exist"},
        {"UPDATE medium SET jukebox = 77 WHERE place = 3",
         "is in a station of jukebox 77, which does not exist"},
        {"DROP INDEX medium_place; UPDATE medium SET slot = 1 WHERE place = 1 AND jukebox = 8 AND slot = 0",
         "are in the same place"},
        {"DELETE FROM side WHERE volume = 34", "records 2 sides but has 1"},
        {"DELETE FROM volume WHERE id = 33; DELETE FROM directory WHERE volume = 33",
         "holds volume 33, which does not exist"},
        {"UPDATE side SET content = 4 WHERE volume = 33", "volume 33 is on a side of medium"},
        {"UPDATE side SET volume = 33 WHERE volume = 34", "volume 33 is a disc but is on 2 sides"},
        {"UPDATE volume SET free = total + 1 WHERE id = 33", "volume 33 has more free than total bytes"},
        {"UPDATE server SET next_volume = 500", "volume 517 has an ID that was never assigned"},
        {"INSERT INTO directory VALUES (999, 0, 'lost')",
         "the directory name \"lost\" belongs to volume 999, which does not exist"},
        {"UPDATE server SET fault_count = 3", "the server records 3 faults but has 0"},
        // MyBox holds volume 33 in a slot, volume 401 is on the shelf, and volume 108 is disabled.
        {"UPDATE volume SET state = 2 WHERE id = 33",
         "volume 33 is recorded as offline but should be active"},
        {"UPDATE volume SET state = 0 WHERE id = 401",
         "volume 401 is recorded as active but should be offline"},
        {"UPDATE volume SET state = 0 WHERE id = 108",
         "volume 108 is recorded as active but should be disabled"},
        {"UPDATE volume SET enabled = 0 WHERE id = 33",
         "volume 33 is recorded as active but should be disabled"},
        {"UPDATE volume SET state = 9 WHERE id = 33",
         "volume 33 is recorded as state 9 but should be active"},
        // Volume 116 is to be shown as state 3.
        {"UPDATE volume SET state = 0 WHERE id = 116",
         "volume 116 is recorded as active but should be state 3"},
        {"INSERT INTO odd_state VALUES (999, 1)", "state 1 is set for volume 999, which does not exist"},
        {"UPDATE medium SET place = 4, jukebox = 0, magazine = 0, slot = 70 WHERE id = "
         "(SELECT medium FROM side WHERE volume = 33)",
         "volume 33 is recorded as active but should be offline"},
        {"UPDATE magazine SET present = 0 WHERE jukebox = 8",
         "volume 33 is recorded as active but should be offline"},
        {"UPDATE side SET side = 1 WHERE volume = 201", "has a side B but only 1 side"},
        {"UPDATE medium SET type = 255 WHERE place = 4", "has the type 255; the range is 0 to 254"},
        {"UPDATE medium SET jukebox = 8 WHERE place = 4", "is on the shelf but names jukebox 8"},
        {"UPDATE medium SET magazine = 1 WHERE place = 3", "but names magazine 2"},
        {"UPDATE volume SET type = 3 WHERE id = 33", "volume 33 has the type 3; the range is 0 to 2"},
        {"INSERT INTO volume VALUES (-99, 0, 2, 1, '', '', 0, 0, -1, 0)",
         "volume -99 was never imported but is on no medium"},
        {"INSERT INTO directory VALUES (-1, 0, 'early')",
         "volume -1 was never imported but has the directory name \"early\""},
        {"UPDATE volume SET label = printf('%256s', 'x') WHERE id = 33",
         "the label of volume 33 is longer than 255 bytes"},
        {"UPDATE volume SET file_system = printf('%30s', 'x') WHERE id = 33",
         "the file system name of volume 33 is longer than 29 bytes"},
        {"UPDATE directory SET name = printf('%1024s', 'x') WHERE volume = 33",
         "a directory name of volume 33 is longer than 1023 bytes"},
        {"DROP INDEX directory_name; INSERT INTO directory SELECT 34, 7, name FROM directory WHERE volume = "
         "33",
         "volumes 33 and 34 have the same directory name, \""},
        {"UPDATE jukebox SET vendor = '123456789' WHERE id = 8",
         "the vendor, product or revision of jukebox 8 is too long"},
        {"UPDATE drive SET revision = '12345' WHERE jukebox = 8 AND number = 1",
         "the vendor, product or revision of drive 2 of jukebox 8 is too long"},
        {"INSERT INTO fault SELECT 1, '*', NULL, NULL, NULL, NULL, NULL, NULL, 0, NULL, 1.5, 1, 7, '', 0, 0, "
         "0; "
         "UPDATE server SET fault_count = 1",
         "fault 1 has the probability 1.5; the range is 0 to 1"},
        {"INSERT INTO fault SELECT 1, '*', NULL, NULL, NULL, NULL, NULL, NULL, 0, NULL, 1, 1, NULL, '', 0, "
         "0, 0; "
         "UPDATE server SET fault_count = 1",
         "fault 1 has neither a code nor a delay"},
        {"INSERT INTO fault SELECT 1, '*', NULL, NULL, NULL, NULL, NULL, NULL, 0, NULL, 1, 1, -7, '', 0, 0, 0; "
         "UPDATE server SET fault_count = 1",
         "fault 1 has the code -7; the range is 0 to 2147483647"},
        {"CREATE TRIGGER planted AFTER UPDATE ON jukebox BEGIN DELETE FROM volume; END",
         "the trigger \"planted\" does not belong to a farm"},
        {"CREATE VIEW planted AS SELECT 1", "the view \"planted\" does not belong to a farm"},
        {"UPDATE side SET part = 2 WHERE volume = 300 AND part = 1",
         "volume 300 has 2 sides with the part number 2"},
        {"UPDATE server SET journal_limit = -1", "the journal limit is -1"},
    };
    for (const BreachCase& expected : cases) {
        Done({"init", "--server", "broken", "--force"});
        ChangeFarm(m_home.GetFolder() / "server-broken.db", expected.script);
        const std::string error = Failed({"check", "--server", "broken"});
        EXPECT_NE(error.find(expected.breach), std::string::npos) << expected.script << "\n" << error;
        std::filesystem::remove(m_home.GetFolder() / "server-broken.db");
    }
}

TEST_F(KrvsimCheck, FarmWithoutItsServerIsRefusedByEverythingElse) {
    Done({"init"});
    ChangeFarm(m_home.LocalFarm(), "DELETE FROM server");
    const std::string refusal =
        "The farm file \"" + m_home.LocalFarm().string() +
        "\" cannot be used: the description of its server is missing; krvsim restore or krvsim "
        "remove --farm helps.";
    EXPECT_EQ(Failed({"dump"}), "krvsim: " + refusal + "\n");
    EXPECT_EQ(Failed({"journal", "--on"}), "krvsim: " + refusal + "\n");
    EXPECT_EQ(Client().GetOpening().text, refusal);
    Done({"init", "--force"});
    Done({"check"});
}

TEST_F(KrvsimCheck, PlantedTriggersDoNotRun) {
    Done({"init"});
    ChangeFarm(m_home.LocalFarm(),
               "CREATE TRIGGER planted AFTER UPDATE ON jukebox BEGIN DELETE FROM directory; END");
    Client client;
    ASSERT_TRUE(client.DisableJukebox(8).ok);
    std::vector<std::string> aspects;
    ASSERT_TRUE(client.Aspects(33, aspects).ok);
    EXPECT_FALSE(aspects.empty());
}

TEST_F(KrvsimCheck, EveryActionLeavesASoundFarm) {
    {
        Client client;
        ASSERT_TRUE(client.Import({29, 1, 4}).ok);
        ASSERT_TRUE(client.Export({8, 0, 2}).ok);
        ASSERT_TRUE(client.DisableMagazine(11, 0).ok);
        ASSERT_TRUE(client.DisableVolume(33).ok);
        ASSERT_TRUE(client.DisableVolume(116).ok);
        ASSERT_TRUE(client.EnableMagazine(11, 0).ok);
        ASSERT_TRUE(client.Format({11, 0, 9}, 0, "New").ok);
    }
    Done({"load", "--jukebox", "@29", "--type", "DVD-RAM", "--label", "Late", "--count", "3",
          "--double-sided"});
    Done({"load", "--jukebox", "@29", "--volume", "33"});
    Done({"unload"});
    EXPECT_TRUE(Done({"check"}).starts_with("The farm of server \".\" is sound.\n"));
}

class KrvsimServers : public ToolFixture {};

TEST_F(KrvsimServers, AreListedWithTheirStates) {
    const std::string folder = m_home.GetFolder().string();
    const std::string none = Done({"servers"});
    EXPECT_TRUE(
        none.starts_with("There are no servers in " + folder + ".\nFolder: " + folder + "; client library: "))
        << none;
    { Client local; }
    Done({"init", "--server", "empty one", "--empty"});
    {
        Client stopped("my_server");
        ASSERT_TRUE(stopped.StopService().ok);
    }
    std::ofstream(m_home.GetFolder() / "server-bad.db") << std::string(2000, 'x');
    std::ofstream(m_home.GetFolder() / "notes.txt") << "no farm";
    const std::string table = Done({"servers"});
    std::stringstream lines(table);
    std::vector<std::string> starts;
    for (std::string line; std::getline(lines, line);)
        starts.push_back(line);
    ASSERT_EQ(starts.size(), 6U) << table;
    EXPECT_TRUE(starts[0].starts_with("Server     State"));
    EXPECT_TRUE(starts[1].starts_with(".          running"));
    EXPECT_NE(starts[1].find("  8          50  "), std::string::npos) << starts[1];
    EXPECT_TRUE(starts[2].starts_with("bad        unusable: The file "));
    EXPECT_TRUE(starts[3].starts_with("empty one  running"));
    EXPECT_TRUE(starts[4].starts_with("my_server  stopped"));
    EXPECT_TRUE(starts[5].starts_with("Folder: " + folder + "; client library: ")) << starts[5];
}

#ifndef _WIN32
TEST_F(KrvsimServers, LinkThatLeadsNowhereHasNeitherSizeNorTime) {
    std::filesystem::create_symlink("nowhere", m_home.LocalFarm());
    std::stringstream lines(Done({"servers"}));
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    EXPECT_NE(line.find("it is a symbolic link that leads nowhere."), std::string::npos) << line;
    EXPECT_TRUE(line.ends_with("  -          -        -     -")) << line;
}

TEST_F(KrvsimServers, FileInPlaceOfTheirFolderIsRefused) {
    const std::filesystem::path file = m_home.GetFolder() / "file";
    std::ofstream(file) << "no folder";
    SetEnvironment("KRVSIM_HOME", file.c_str());
    EXPECT_EQ(Failed({"servers"}), "krvsim: The folder for the farms, \"" + file.string() +
                                       "\", cannot be used: Not a directory.\n");
}
#endif

}  // namespace
}  // namespace embedded_test
