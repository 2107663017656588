// A farm becomes a layout file and a layout file a farm.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "embedded/farms/farm_writer.h"
#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "embedded/layout/layout_writer.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_test.h"
#include "tools/common/command.h"
#include "tools/krvsim/new_farm.h"
#include "tools/krvsim/random.h"

namespace simulator_test {
namespace {

using embedded::Content;
using embedded::Farm;
using embedded::FarmMedium;
using embedded::FarmSide;
using embedded::FarmVolume;
using embedded::SlotState;
using embedded::tools::Random;

class KrvsimInit : public ToolTest {};

TEST_F(KrvsimInit, DemonstrationFarmComesBackFromItsDump) {
    EXPECT_EQ(Done({"init"}), "Server \".\" has a farm of 8 jukeboxes and 53 volumes.\n");
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

// A farm with everything that a layout can say, in an order that only the seed knows.
class RandomFarm {
  public:
    explicit RandomFarm(int64_t seed) : m_random(seed) {}

    Farm Make() {
        Farm farm;
        farm.running = m_random.PerCent(70);
        const uint64_t jukeboxes = 1 + m_random.Below(3);
        for (uint64_t id = 1; id <= jukeboxes; ++id)
            AddJukebox(farm, static_cast<int32_t>(id * 7));
        for (uint64_t count = m_random.Below(3); count > 0; --count)
            farm.shelf.push_back(Medium(1));
        farm.volumes = m_volumes;
        for (uint64_t count = m_random.Below(3); count > 0; --count)
            farm.volumes.push_back(Volume(NextId()));
        std::ranges::stable_sort(farm.volumes, [](const FarmVolume& left, const FarmVolume& right) {
            return std::pair(left.id < 0, std::abs(left.id)) < std::pair(right.id < 0, std::abs(right.id));
        });
        farm.nextVolume = m_last + 1 + static_cast<int32_t>(m_random.Below(50));
        return farm;
    }

  private:
    std::string Text(size_t limit) {
        static const std::vector<std::string> texts = {"",
                                                       "plain",
                                                       "a \"quoted\" one",
                                                       "back\\slash",
                                                       "line\nbreak\ttab",
                                                       "K\xC3\xB6ln",
                                                       "K\xF6ln",
                                                       "100%s %n",
                                                       "\x7F",
                                                       "\xED\xA0\x80",
                                                       std::string(200, 'x')};
        return texts[m_random.Below(texts.size())].substr(0, limit);
    }

    int32_t NextId() { return m_last += 1 + static_cast<int32_t>(m_random.Below(3)); }

    embedded::FarmDevice Device() {
        return {Text(8), Text(16), Text(4), {static_cast<int32_t>(m_random.Below(9)), -1, 0}};
    }

    FarmVolume Volume(int32_t id) {
        FarmVolume volume;
        volume.id = id;
        volume.enabled = m_random.PerCent(80);
        volume.label = Text(255);
        volume.fileSystem = Text(29);
        volume.total = m_random.PerCent(10) ? UINT64_MAX : m_random.Below(1'000'000);
        volume.free = volume.total == 0 ? 0 : m_random.Below(volume.total);
        if (m_random.PerCent(20)) volume.state = 3 + static_cast<int32_t>(m_random.Below(5));
        if (m_random.PerCent(20)) volume.value1 = 5;
        if (m_random.PerCent(20)) volume.value2 = UINT32_MAX;
        if (id < 0) return volume;
        for (uint64_t count = m_random.Below(3); count > 0; --count) {
            volume.directories.push_back("dir" + std::to_string(id) + "." + std::to_string(count) +
                                         Text(100));
        }
        return volume;
    }

    // A volume of more than one side goes on here until it has three.
    int32_t VolumeOfSide(int sign, FarmSide& side) {
        if (sign > 0 && m_random.PerCent(15)) {
            if (m_shared == 0 || m_parts == 3) {
                m_shared = NextId();
                m_parts = 0;
                FarmVolume volume = Volume(m_shared);
                volume.type =
                    m_random.PerCent(50) ? embedded::VolumeType::Mirror : embedded::VolumeType::VolumeSet;
                m_volumes.push_back(std::move(volume));
            }
            side.part = ++m_parts;
            return m_shared;
        }
        const int32_t id = sign > 0 ? NextId() : --m_lastUnseen;
        m_volumes.push_back(Volume(id));
        return id;
    }

    FarmSide Side(uint32_t type, int sign) {
        const uint64_t fate = m_random.Below(10);
        FarmSide side = embedded::UsualSide(type, Content::Blank, 0);
        if (fate == 0) side = embedded::UsualSide(type, Content::Bad, 0);
        if (fate == 1) side = embedded::UsualSide(type, Content::NoFileSystem, 0);
        if (fate > 3) {
            side = embedded::UsualSide(type, fate == 9 ? Content::Bad : Content::FileSystem, 1);
            side.volume = VolumeOfSide(sign, side);
        }
        if (m_random.PerCent(30)) side.finalization = static_cast<embedded::Finalization>(m_random.Below(4));
        if (m_random.PerCent(20)) side.sequential = !side.sequential;
        return side;
    }

    FarmMedium Medium(int sign) {
        static const std::vector<uint32_t> odd = {3, 19, 253, 254};
        FarmMedium medium;
        const auto types = embedded::AllMediaTypes();
        medium.type =
            m_random.PerCent(20) ? odd[m_random.Below(odd.size())] : types[m_random.Below(types.size())].code;
        const int sides = m_random.PerCent(40) ? 2 : 1;
        for (int side = 0; side < sides; ++side)
            medium.sides.push_back(Side(medium.type, sign));
        return medium;
    }

    embedded::FarmMagazine Magazine() {
        embedded::FarmMagazine magazine;
        magazine.slotCount = static_cast<int32_t>(m_random.Below(8));
        magazine.present = m_random.PerCent(80);
        for (int32_t slot = 1; slot <= magazine.slotCount; ++slot) {
            const uint64_t fate = m_random.Below(10);
            const bool isFull = fate < 6;
            if (isFull) {
                magazine.media.push_back(Medium(1));
                magazine.media.back().slot = slot;
            }
            if (fate == 0 || fate == 9) magazine.oddSlots.push_back({slot, SlotState::Unknown});
            if (fate == 1 || fate == 8) magazine.oddSlots.push_back({slot, SlotState::ScanFailed});
            if (fate == 7) magazine.oddSlots.push_back({slot, SlotState::NotPresent});
        }
        return magazine;
    }

    void AddJukebox(Farm& farm, int32_t id) {
        embedded::FarmJukebox jukebox;
        jukebox.id = id;
        jukebox.name = "n" + Text(50);
        jukebox.enabled = m_random.PerCent(80);
        jukebox.doubleSided = m_random.PerCent(50);
        jukebox.changer = Device();
        for (uint64_t count = m_random.Below(3); count > 0; --count) {
            jukebox.drives.push_back({Device(), m_random.PerCent(80), {m_random.Next(), 0}});
        }
        for (uint64_t count = m_random.Below(4); count > 0; --count)
            jukebox.magazines.push_back(Magazine());
        for (uint64_t count = m_random.Below(3); count > 0; --count)
            jukebox.waiting.push_back(Medium(-1));
        for (uint64_t count = m_random.Below(3); count > 0; --count)
            jukebox.exported.push_back(Medium(1));
        farm.jukeboxes.push_back(std::move(jukebox));
    }

    Random m_random;
    std::vector<FarmVolume> m_volumes;
    int32_t m_last = 0;
    int32_t m_lastUnseen = 0;
    int32_t m_shared = 0;
    int32_t m_parts = 0;
};

TEST_F(KrvsimInit, RandomFarmsComeBackFromTheirDumps) {
    for (int64_t seed = 1; seed <= 60; ++seed) {
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

TEST_F(KrvsimInit, FarmThatIsThereIsKeptUnlessForced) {
    Done({"init"});
    const std::string error = Refused({"init", "--empty"});
    EXPECT_EQ(error, "krvsim: server \".\" has a farm already, in " + m_home.LocalFarm().string() +
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

TEST_F(KrvsimInit, LayoutThatContradictsItselfIsRefusedWhole) {
    Done({"init"});
    const std::string before = Done({"dump"});
    const std::string file = WriteFile("bad.toml",
                                       "format = 1\n"
                                       "volume = [ { id = 1 }, { id = 1 } ]\n"
                                       "shelf = [\n"
                                       "  { type = \"CD-R\", a = 2 },\n"
                                       "]\n");
    EXPECT_EQ(Refused({"init", "--force", "--layout", file}),
              "krvsim: " + file + ":2: volume 1 is there twice\n" +  //
                  "krvsim: " + file + ":4: volume 2 in the shelf is not declared\n");
    EXPECT_EQ(Done({"dump"}), before);
}

TEST_F(KrvsimInit, FaultInALayoutNamesFileLineAndField) {
    const std::string file = WriteFile("bad.toml", "format = 1\n[[jukebox]]\nid = \"x\"\n");
    EXPECT_EQ(Refused({"init", "--layout", file}),
              "krvsim: " + file + ":3: jukebox[1].id: is not a whole number\n" +  //
                  "krvsim: " + file + ":2: jukebox[1].name: is missing\n");
    EXPECT_FALSE(std::filesystem::exists(m_home.LocalFarm()));
}

TEST_F(KrvsimInit, LayoutFileThatCannotBeReadIsNamed) {
    EXPECT_EQ(Refused({"init", "--layout", "/nowhere/farm.toml"}),
              "krvsim: /nowhere/farm.toml: cannot be read\n");
    const std::string folder = m_home.GetFolder().string();
    EXPECT_EQ(Refused({"init", "--layout", folder}), "krvsim: " + folder + ": is a folder\n");
}

TEST_F(KrvsimInit, FileThatIsNoFarmIsNotReplaced) {
    std::ofstream(m_home.LocalFarm()) << std::string(5000, 'x');
    EXPECT_EQ(Refused({"init", "--force"}), "krvsim: The file \"" + m_home.LocalFarm().string() +
                                                "\" is not a farm of the simulated service.\n");
    EXPECT_EQ(std::filesystem::file_size(m_home.LocalFarm()), 5000U);
}

class KrvsimDump : public ToolTest {};

TEST_F(KrvsimDump, JsonTellsTheWholeFarm) {
    const auto farm = nlohmann::json::parse(Done({"dump", "--format", "json"}));
    EXPECT_EQ(farm["schema"], 1);
    EXPECT_EQ(farm["server"], ".");
    EXPECT_EQ(farm["running"], true);
    EXPECT_EQ(farm["jukeboxes"].size(), 8U);
    EXPECT_EQ(farm["volumes"].size(), 53U);
    EXPECT_EQ(farm["shelf"].size(), 1U);
    const auto& box = farm["jukeboxes"][0];
    EXPECT_EQ(box["name"], "MyBox");
    EXPECT_EQ(box["drives"].size(), 2U);
    const auto& slots = box["magazines"][0]["slots"];
    ASSERT_EQ(slots.size(), 12U);
    EXPECT_EQ(slots[2]["state"], "full");
    EXPECT_EQ(slots[2]["medium"]["type"], "DVD-RAM");
    EXPECT_EQ(slots[2]["medium"]["sides"][1]["volume"], 34);
    EXPECT_EQ(slots[4]["state"], "empty");
    EXPECT_EQ(slots[5]["state"], "not present");
    EXPECT_TRUE(slots[4]["medium"].is_null());
}

TEST_F(KrvsimDump, JsonGivesBytesThatAreNoTextInHexadecimal) {
    Client client;
    ASSERT_TRUE(client.RenameJukebox(8, "K\xF6ln").ok);
    const auto farm = nlohmann::json::parse(Done({"dump", "--format", "json"}));
    EXPECT_EQ(farm["jukeboxes"][0]["name"]["hex"], "4bf66c6e");
}

struct TextCase {
    const char* bytes;
    bool isText;
};

TEST(Texts, AreUtf8) {
    const std::vector<TextCase> cases = {
        {"", true},
        {"plain", true},
        {"K\xC3\xB6ln", true},
        {"\xE2\x82\xAC", true},
        {"\xF0\x9F\x92\xBF", true},
        {"\xF4\x8F\xBF\xBF", true},
        {"K\xF6ln", false},
        {"\xC3", false},
        {"\xC0\xAF", false},          // overlong
        {"\xE0\x80\xAF", false},      // overlong
        {"\xED\xA0\x80", false},      // a surrogate
        {"\xF4\x90\x80\x80", false},  // beyond Unicode
        {"\xE2\x82", false},
        {"\x80", false},
    };
    for (const TextCase& expected : cases)
        EXPECT_EQ(embedded::IsText(expected.bytes), expected.isText) << expected.bytes;
    EXPECT_FALSE(embedded::IsText(std::string_view("a\0b", 3)));
    EXPECT_EQ(embedded::ToHex("K\xF6"), "4bf6");
}

class KrvsimGenerate : public ToolTest {};

TEST_F(KrvsimGenerate, SameSeedGivesTheSameFarmAndAnotherOneAnother) {
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

TEST_F(KrvsimGenerate, CountsAreThoseThatWereAskedFor) {
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
    EXPECT_NE(Refused({"generate"}), "");
}

TEST_F(KrvsimGenerate, TellsWhatItMadeInOneAndInSeveral) {
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

TEST_F(KrvsimGenerate, RefusedOneLeavesNothingBehind) {
    const std::string tooMany = WrongUsage({"generate", "--jukeboxes", "2000000", "--slots", "2000000"});
    EXPECT_EQ(tooMany, "krvsim: that would be 4000000000000 slots, at most 2000000 are possible\n");
    EXPECT_EQ(Refused({"generate", "--server", std::string(65, 'x')}),
              "krvsim: Server name \"" + std::string(64, 'x') +
                  "\" is not valid: it has 65 bytes, 1 to 64 are allowed.\n");
    EXPECT_TRUE(std::filesystem::is_empty(m_home.GetFolder()));
}

TEST_F(KrvsimGenerate, FailureHalfwayLeavesNothingOfANewFarmAndAllOfAnOldOne) {
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

TEST_F(KrvsimGenerate, NextFarmTakesAwayWhatAKilledProcessHasLeft) {
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

TEST_F(KrvsimGenerate, FarmThatAnotherProcessMakesMeanwhileIsKept) {
    const auto tooLate = [](embedded::Database& database) {
        Done({"init", "--server", "new", "--empty"});
        embedded::WriteFarm(database, "new", RandomFarm(1).Make());
    };
    EXPECT_THROW(embedded::tools::MakeFarm("new", embedded::tools::Existing::Keep, tooLate),
                 embedded::tools::ToolFailure);
    EXPECT_TRUE(Client("new").Jukeboxes().empty());
}

class LayoutOfSeveralContradictions : public ToolTest {};

TEST_F(LayoutOfSeveralContradictions, IsRefusedWithEachOfThem) {
    const std::string file = WriteFile("several.toml",
                                       "format = 1\n"
                                       "volume = [{ id = 7 }, { id = 7 }]\n"
                                       "[[jukebox]]\n"
                                       "id = 3\n"
                                       "name = \"x\"\n"
                                       "slot_count = 9\n"
                                       "[[jukebox.magazine]]\n"
                                       "slots = 3\n"
                                       "media = [{ slot = 9, type = \"CD-R\", a = 7 }]\n");
    EXPECT_EQ(Refused({"init", "--layout", file}),
              "krvsim: " + file +
                  ":6: jukebox[1].slot_count: is 9, but there are 3\n"
                  "krvsim: " +
                  file +
                  ":2: volume 7 is there twice\n"
                  "krvsim: " +
                  file + ":9: slot 9 of magazine 1 of jukebox 3 does not exist\n");
    EXPECT_FALSE(std::filesystem::exists(m_home.LocalFarm()));
}

class KrvsimOutput : public ToolTest {};

// A stream that takes nothing, as a full disk does.
class RefusingBuffer : public std::streambuf {};

TEST_F(KrvsimOutput, OutputThatCannotBeWrittenIsARefusal) {
    RefusingBuffer buffer;
    std::ostream out(&buffer);
    std::stringstream err;
    EXPECT_EQ(embedded::tools::RunTool({"servers"}, {out, err}), 1);
    EXPECT_EQ(err.str(), "krvsim: the output cannot be written\n");
}

}  // namespace
}  // namespace simulator_test
