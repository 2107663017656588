#include <gtest/gtest.h>

#include <chrono>

#include "embedded/farms/farm_writer.h"
#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "embedded/layout/layout_writer.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/random_farm_fixture.h"
#include "tests/unit/tools/tool_fixture.h"
#include "tools/krvsim/new_farm.h"

namespace embedded_test {
namespace {

class KrvsimInit : public ToolFixture {};

TEST_F(KrvsimInit, DemonstrationFarmComesBackFromItsDump) {
    EXPECT_EQ(Done({"init"}),
              "Server \".\" has a farm of 8 jukeboxes and 50 volumes; 3 volumes wait for import.\n");
    const std::string dump = Done({"dump"});
    const std::string file = WriteFile("farm.toml", dump);
    Done({"init", "--server", "second", "--layout", file});
    EXPECT_EQ(Body(Done({"dump", "--server", "second"})), Body(dump));
    Done({"check", "--server", "second"});
}

TEST_F(KrvsimInit, DumpOfTheDemonstrationFarmIsItsLayout) {
    const embedded::LayoutResult dumped = embedded::ReadLayout(Done({"dump"}));
    EXPECT_TRUE(dumped.problems.empty());
    EXPECT_EQ(dumped.farm.jukeboxes.size(), 8U);
    EXPECT_EQ(dumped.farm.volumes.size(), 53U);
    EXPECT_EQ(dumped.farm.nextVolume, 600);
    EXPECT_EQ(dumped.farm.shelf.size(), 1U);
}

TEST_F(KrvsimInit, RandomFarmsComeBackFromTheirDumps) {
    for (uint64_t seed = 1; seed <= 60; ++seed) {
        const Farm farm = RandomFarm(seed).Make();
        ASSERT_TRUE(embedded::FindContradictions(farm).empty()) << seed;
        std::stringstream layout;
        embedded::WriteLayout(layout, ".", farm);
        const std::string file = WriteFile("farm.toml", layout.str());
        Done({"init", "--force", "--layout", file});
        EXPECT_EQ(Done({"dump"}), layout.str()) << seed;
        Done({"check"});
    }
}

TEST_F(KrvsimInit, KeepsAnExistingFarmUnlessForced) {
    Done({"init"});
    const std::string error = Failed({"init", "--empty"});
    EXPECT_EQ(error, "krvsim: server \".\" already has a farm, in " + m_home.LocalFarm().string() +
                         " (--force replaces it)\n");
    EXPECT_EQ(Client().Jukeboxes().size(), 8U);
    EXPECT_EQ(Done({"init", "--empty", "--force"}),
              "Server \".\" has a farm of 0 jukeboxes and 0 volumes.\n");
    EXPECT_TRUE(Client().Jukeboxes().empty());
}

TEST_F(KrvsimInit, ForceEndsTheSessionsWithTheOldFarm) {
    Client open;
    Done({"init", "--force"});
    JukeboxRecord record{};
    EXPECT_EQ(open.Jukebox(8, record).code, 1002);
}

TEST_F(KrvsimInit, ServerOfAnyNameIsKnownAfterwards) {
    const Client before("archive.example");
    EXPECT_EQ(before.GetOpening().code, 1010);
    Done({"init", "--server", "archive.example"});
    Client after("archive.example");
    EXPECT_TRUE(after.GetOpening().ok);
}

struct InvalidLayout {
    const char* layout;
    std::vector<std::string> problems;  // behind the name of the file
};

TEST_F(KrvsimInit, InvalidLayoutChangesNothingAndEveryProblemIsReported) {
    const std::vector<InvalidLayout> cases = {
        // Problems of fields stand alone: contradictions could follow from them.
        {"format = 1\nvolume = [{ id = 1 }, { id = 1 }]\n[[jukebox]]\nid = \"x\"\n",
         {":4: jukebox[1].id: must be an integer", ":3: jukebox[1].name: is missing"}},
        {"format = 1\n"
         "volume = [ { id = 1 }, { id = 1 } ]\n"
         "shelf = [\n"
         "  { type = \"CD-R\", a = 2 },\n"
         "]\n",
         {":2: volume 1 is defined twice", ":4: volume 2 on the shelf is not defined"}},
        // A count that does not match stands beside the contradictions.
        {"format = 1\n"
         "volume = [{ id = 7 }, { id = 7 }]\n"
         "[[jukebox]]\n"
         "id = 3\n"
         "name = \"x\"\n"
         "slot_count = 9\n"
         "[[jukebox.magazine]]\n"
         "slots = 3\n"
         "media = [{ slot = 9, type = \"CD-R\", a = 7 }]\n",
         {":6: jukebox[1].slot_count: is 9, but there are 3", ":2: volume 7 is defined twice",
          ":9: slot 9 of magazine 1 of jukebox 3 does not exist"}},
    };
    for (const InvalidLayout& invalid : cases) {
        const std::string file = WriteFile("bad.toml", invalid.layout);
        std::string expected;
        for (const std::string& problem : invalid.problems)
            expected += "krvsim: " + file + problem + "\n";
        EXPECT_EQ(Failed({"init", "--server", "new", "--layout", file}), expected);
    }
    EXPECT_FALSE(std::filesystem::exists(m_home.GetFolder() / "server-new.db"));
    const std::string before = Done({"dump"});
    (void)Failed({"init", "--force", "--layout", WriteFile("bad.toml", cases[1].layout)});
    EXPECT_EQ(Done({"dump"}), before);
}

TEST_F(KrvsimInit, LayoutFileThatCannotBeReadIsNamed) {
    EXPECT_EQ(Failed({"init", "--layout", "/nowhere/farm.toml"}),
              "krvsim: /nowhere/farm.toml: cannot be read\n");
    const std::string folder = m_home.GetFolder().string();
    EXPECT_EQ(Failed({"init", "--layout", folder}), "krvsim: " + folder + ": is a directory\n");
}

TEST_F(KrvsimInit, LayoutFileAboveOneGibibyteIsRefused) {
    const std::string file = WriteFile("large.toml", "");
    std::filesystem::resize_file(file, (1ULL << 30U) + 1);
    EXPECT_EQ(Failed({"init", "--layout", file}), "krvsim: " + file + ": is larger than 1 GiB\n");
}

#ifndef _WIN32
TEST_F(KrvsimInit, EndlessLayoutFileIsRefused) {
    EXPECT_TRUE(Failed({"init", "--layout", "/dev/zero"}).starts_with("krvsim: /dev/zero:1: "));
}
#endif

TEST_F(KrvsimInit, FileThatIsNoFarmIsNotReplaced) {
    std::ofstream(m_home.LocalFarm()) << std::string(5000, 'x');
    EXPECT_EQ(Failed({"init", "--force"}), "krvsim: The file \"" + m_home.LocalFarm().string() +
                                               "\" is not a farm of the simulated service.\n");
    EXPECT_EQ(std::filesystem::file_size(m_home.LocalFarm()), 5000U);
}

class NewFarm : public ToolFixture {};

TEST_F(NewFarm, FailureLeavesNoNewFarmAndAllOfAnOldOne) {
    const auto fail = [](embedded::Database& database) {
        embedded::WriteFarm(database, ".", RandomFarm(1).Make());
        throw embedded::tools::ToolFailure("no more");
    };
    EXPECT_THROW(embedded::tools::MakeFarm("new", embedded::tools::Existing::Keep, fail),
                 embedded::tools::ToolFailure);
    EXPECT_TRUE(std::filesystem::is_empty(m_home.GetFolder()));
    Done({"init"});
    const std::string before = Done({"dump"});
    EXPECT_THROW(embedded::tools::MakeFarm(".", embedded::tools::Existing::Replace, fail),
                 embedded::tools::ToolFailure);
    EXPECT_EQ(Done({"dump"}), before);
}

TEST_F(NewFarm, RemovesLeftoversOfAKilledProcess) {
    const std::filesystem::path left = WriteFile("server-new.db.new-1234-1", "half a farm");
    const std::filesystem::path young = WriteFile("server-new.db.new-1235-1", "being made");
    const std::filesystem::path other = WriteFile("server-newer.db.new-1234-1", "of another server");
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(2);
    std::filesystem::last_write_time(left, longAgo);
    std::filesystem::last_write_time(other, longAgo);
    Done({"generate", "--server", "new"});
    EXPECT_FALSE(std::filesystem::exists(left));
    EXPECT_TRUE(std::filesystem::exists(young));
    EXPECT_TRUE(std::filesystem::exists(other));
    EXPECT_EQ(Done({"servers"}).find("new-"), std::string::npos);
}

TEST_F(NewFarm, OfAFolderThatDoesNotExistIsMadeOnlyByWhatMakesFarms) {
    const std::filesystem::path folder = m_home.GetFolder() / "new";
    SetEnvironment("KRVSIM_HOME", folder.string().c_str());
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"check"}, {"servers"}, {"dump"}, {"journal", "--on"}, {"fault", "list"}, {"unload"}}) {
        const ToolResult refused = RunKrvsim(words);
        EXPECT_NE(refused.status, 0) << words[0];
        EXPECT_FALSE(std::filesystem::exists(folder)) << words[0];
    }
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"init"}, {"generate", "--server", "."}}) {
        Done(words);
        EXPECT_TRUE(std::filesystem::exists(folder / m_home.LocalFarm().filename())) << words[0];
        std::filesystem::remove_all(folder);
    }
}

TEST_F(NewFarm, KeepsTheFarmThatAnotherProcessMakesMeanwhile) {
    const auto tooLate = [](embedded::Database& database) {
        Done({"init", "--server", "new", "--empty"});
        embedded::WriteFarm(database, "new", RandomFarm(1).Make());
    };
    EXPECT_THROW(embedded::tools::MakeFarm("new", embedded::tools::Existing::Keep, tooLate),
                 embedded::tools::ToolFailure);
    EXPECT_TRUE(Client("new").Jukeboxes().empty());
}

}  // namespace
}  // namespace embedded_test
