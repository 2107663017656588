#include <gtest/gtest.h>

#include <filesystem>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimGenerate : public ToolFixture {};

TEST_F(KrvsimGenerate, SeedDeterminesTheFarm) {
    const auto generate = [](const char* server, const char* seed) {
        return Done({"generate", "--server", server, "--jukeboxes", "2", "--magazines", "3", "--slots", "40",
                     "--fill", "70", "--seed", seed});
    };
    generate("one", "5");
    generate("two", "5");
    generate("three", "6");
    const std::string one = Body(Done({"dump", "--server", "one"}));
    EXPECT_EQ(one, Body(Done({"dump", "--server", "two"})));
    EXPECT_NE(one, Body(Done({"dump", "--server", "three"})));
    Done({"check", "--server", "one"});
}

TEST_F(KrvsimGenerate, HasTheNumbersThatWereAskedFor) {
    Done({"generate", "--jukeboxes", "3", "--magazines", "2", "--slots", "5", "--fill", "100"});
    Client client;
    EXPECT_EQ(client.Jukeboxes(), (std::vector<uint32_t>{1, 2, 3}));
    JukeboxRecord record{};
    ASSERT_TRUE(client.Jukebox(2, record).ok);
    EXPECT_EQ(record.magazineCount, 2);
    EXPECT_EQ(record.slotCount, 10);
    EXPECT_EQ(client.SlotState({3, 1, 4}), 4U);
    Done({"generate", "--force", "--fill", "0"});
    Client empty;
    EXPECT_TRUE(empty.Volumes().empty());
    EXPECT_NE(Failed({"generate"}), "");
}

TEST_F(KrvsimGenerate, ReportsItsCountsInSingularAndPlural) {
    EXPECT_EQ(Done({"generate", "--slots", "1", "--fill", "0"}),
              "Server \".\" has a farm of 1 jukebox, 1 slot and 0 volumes.\n");
    EXPECT_EQ(Done({"generate", "--force", "--jukeboxes", "2", "--slots", "3", "--fill", "0"}),
              "Server \".\" has a farm of 2 jukeboxes, 6 slots and 0 volumes.\n");
    const std::string file = WriteFile("one.toml",
                                       "format = 1\n"
                                       "volume = [{ id = 1 }]\n"
                                       "shelf = [{ type = \"CD-R\", a = 1 }]\n"
                                       "[[jukebox]]\nid = 3\nname = \"x\"\n");
    EXPECT_EQ(Done({"init", "--server", "one", "--layout", file}),
              "Server \"one\" has a farm of 1 jukebox and 1 volume.\n");
}

TEST_F(KrvsimGenerate, FailureLeavesNothingBehind) {
    const std::string tooMany = WrongUsage({"generate", "--jukeboxes", "2000000", "--slots", "2000000"});
    EXPECT_EQ(tooMany, "krvsim: 4000000000000 slots are too many; the limit is 2000000\n");
    EXPECT_EQ(Failed({"generate", "--server", std::string(65, 'x')}),
              "krvsim: Server name \"" + std::string(64, 'x') +
                  "\" is not valid: it has 65 bytes, 1 to 64 are allowed.\n");
    EXPECT_TRUE(std::filesystem::is_empty(m_home.GetFolder()));
}

}  // namespace
}  // namespace embedded_test
