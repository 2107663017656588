#include <gtest/gtest.h>
#include <sqlite3.h>

#include "simulator/krvsim/progress.h"
#include "simulator/krvsim/text_table.h"
#include "tests/unit/simulator/krvsim/tool_test.h"
#include "tests/unit/simulator/support/client.h"

namespace simulator_test {
namespace {

void ChangeFarm(const std::filesystem::path& farm, const std::string& script) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(farm.string().c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, script.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection) << "\n"
        << script;
    sqlite3_close(connection);
}

class KrvsimCheck : public ToolTest {};

TEST_F(KrvsimCheck, DemonstrationFarmIsSound) {
    EXPECT_EQ(Done({"check"}), "The farm of server \".\" is sound.\n");
}

struct BreachCase {
    const char* script;
    const char* breach;
};

TEST_F(KrvsimCheck, EveryBreachIsTold) {
    const std::vector<BreachCase> cases = {
        {"DELETE FROM server", "the server has 0 descriptions instead of one"},
        {"UPDATE jukebox SET name = '' WHERE id = 8", "jukebox 8 has an empty name"},
        {"UPDATE jukebox SET name = printf('%52s', 'x') WHERE id = 8",
         "the name of jukebox 8 is longer than 51 bytes"},
        {"UPDATE jukebox SET drive_count = 9 WHERE id = 8", "jukebox 8 counts 9 drives, but has 2"},
        {"UPDATE jukebox SET magazine_count = 9 WHERE id = 8", "jukebox 8 counts 9 magazines, but has 1"},
        {"UPDATE jukebox SET slot_count = 9 WHERE id = 8",
         "jukebox 8 counts 9 slots, but its present magazines have 12"},
        {"UPDATE drive SET number = 5 WHERE jukebox = 8 AND number = 1",
         "the drives of jukebox 8 are not numbered without gaps"},
        {"UPDATE magazine SET first_slot = 3 WHERE jukebox = 8",
         "magazine 1 of jukebox 8 begins with slot 3, not 0"},
        {"DELETE FROM jukebox WHERE id = 52", "magazine 1 belongs to jukebox 52, which is not there"},
        {"DELETE FROM slot WHERE jukebox = 8 AND number = 11",
         "magazine 1 of jukebox 8 counts 12 slots, but has 11"},
        {"UPDATE slot SET state = 3 WHERE jukebox = 8 AND number = 0",
         "slot 1 of magazine 1 of jukebox 8 is empty, but holds a medium"},
        {"UPDATE slot SET state = 4 WHERE jukebox = 8 AND number = 4",
         "slot 5 of magazine 1 of jukebox 8 is full, but holds no medium"},
        {"UPDATE medium SET slot = 90 WHERE place = 1 AND jukebox = 8 AND slot = 0",
         "is in slot 91 of magazine 1 of jukebox 8, which is not there"},
        {"UPDATE medium SET jukebox = 77 WHERE place = 3",
         "is in a station of jukebox 77, which is not there"},
        {"DROP INDEX medium_place; UPDATE medium SET slot = 1 WHERE place = 1 AND jukebox = 8 AND slot = 0",
         "are in one place"},
        {"DELETE FROM side WHERE volume = 34", "has 2 sides, but 1 are described"},
        {"DELETE FROM volume WHERE id = 33; DELETE FROM directory WHERE volume = 33", "volume 33 on medium"},
        {"UPDATE side SET content = 4 WHERE volume = 33", "volume 33 lies on a side without a file system"},
        {"UPDATE side SET volume = 33 WHERE volume = 34", "volume 33 is a disc, but lies on 2 sides"},
        {"UPDATE volume SET free = total + 1 WHERE id = 33", "volume 33 has more free bytes than bytes"},
        {"UPDATE server SET next_volume = 500", "volume 517 has a number that is still to be given"},
        {"INSERT INTO directory VALUES (999, 0, 'lost')",
         "volume 999, which is not there, has the directory name \"lost\""},
        {"UPDATE server SET fault_count = 3", "the server counts 3 faults, but has 0"},
    };
    for (const BreachCase& expected : cases) {
        Done({"init", "--server", "broken", "--force"});
        ChangeFarm(m_home.GetFolder() / "server-broken.db", expected.script);
        const std::string error = Refused({"check", "--server", "broken"});
        EXPECT_NE(error.find(expected.breach), std::string::npos) << expected.script << "\n" << error;
        std::filesystem::remove(m_home.GetFolder() / "server-broken.db");
    }
}

class KrvsimServers : public ToolTest {};

TEST_F(KrvsimServers, AreListedWithTheirStates) {
    EXPECT_EQ(Done({"servers"}), "There are no servers in " + m_home.GetFolder().string() + ".\n");
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
    ASSERT_EQ(starts.size(), 5U) << table;
    EXPECT_TRUE(starts[0].starts_with("Server     State"));
    EXPECT_TRUE(starts[1].starts_with(".          running"));
    EXPECT_NE(starts[1].find("  8          50  "), std::string::npos) << starts[1];
    EXPECT_TRUE(starts[2].starts_with("bad        unusable: The file "));
    EXPECT_TRUE(starts[3].starts_with("empty one  running"));
    EXPECT_TRUE(starts[4].starts_with("my_server  stopped"));
}

TEST(ProgressLine, ShowsHowFarItIs) {
    EXPECT_EQ(krvsim::ProgressLine("slots", 0, 10), "slots [..............................]   0%");
    EXPECT_EQ(krvsim::ProgressLine("slots", 5, 10), "slots [###############...............]  50%");
    EXPECT_EQ(krvsim::ProgressLine("slots", 10, 10), "slots [##############################] 100%");
    EXPECT_EQ(krvsim::ProgressLine("slots", 11, 10), "slots [##############################] 100%");
    EXPECT_EQ(krvsim::ProgressLine("slots", 0, 0), "slots [..............................]   0%");
}

TEST(TextTable, ColumnsAreAsWideAsTheirWidestCell) {
    krvsim::TextTable table({"A", "Long head"});
    table.Add({"wide cell", "x"});
    std::stringstream out;
    table.Write(out);
    EXPECT_EQ(out.str(), "A          Long head\nwide cell  x\n");
}

}  // namespace
}  // namespace simulator_test
