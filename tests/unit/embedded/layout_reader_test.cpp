#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/layout/layout_reader.h"

namespace embedded_test {
namespace {

using embedded::Content;
using embedded::Farm;
using embedded::Finalization;
using embedded::LayoutResult;
using embedded::SlotState;

std::vector<std::string> ProblemsOf(const std::string& text) {
    std::vector<std::string> problems;
    for (const embedded::Problem& problem : embedded::ReadLayout(text).problems) {
        problems.push_back(ProblemText("farm.toml", problem));
    }
    return problems;
}

Farm FarmOf(const std::string& text) {
    const LayoutResult result = embedded::ReadLayout(text);
    for (const embedded::Problem& problem : result.problems)
        ADD_FAILURE() << ProblemText("farm.toml", problem);
    return result.farm;
}

TEST(LayoutReader, EmptyFarmNeedsOnlyItsFormat) {
    const Farm farm = FarmOf("format = 1\n");
    EXPECT_TRUE(farm.running);
    EXPECT_TRUE(farm.jukeboxes.empty());
    EXPECT_TRUE(farm.volumes.empty());
}

TEST(LayoutReader, ReadsEveryFieldOfAJukebox) {
    const Farm farm = FarmOf(R"(
format = 1
running = false
next_volume = 90
jukebox_count = 1
[[jukebox]]
id = 7
name = "Box"
enabled = false
double_sided = true
vendor = "V"
product = "P"
revision = "R"
scsi = [1, -2, 3]
drive_count = 1
magazine_count = 2
slot_count = 14
drive = [ { vendor = "DV", product = "DP", revision = "DR", scsi = [4, 5, 6], enabled = false, value1 = 7, value2 = "18446744073709551615" } ]
[[jukebox.magazine]]
slots = 4
[[jukebox.magazine]]
slots = 10
present = false
unknown = [1]
not_present = [2, 3]
scan_failed = [4]
)");
    EXPECT_FALSE(farm.running);
    EXPECT_EQ(farm.nextVolume, 90);
    ASSERT_EQ(farm.jukeboxes.size(), 1U);
    const embedded::FarmJukebox& jukebox = farm.jukeboxes[0];
    EXPECT_EQ(jukebox.id, 7);
    EXPECT_EQ(jukebox.name, "Box");
    EXPECT_FALSE(jukebox.enabled);
    EXPECT_TRUE(jukebox.doubleSided);
    EXPECT_EQ(jukebox.changer.vendor, "V");
    EXPECT_EQ(jukebox.changer.product, "P");
    EXPECT_EQ(jukebox.changer.revision, "R");
    EXPECT_EQ(jukebox.changer.scsi[1], -2);
    ASSERT_EQ(jukebox.drives.size(), 1U);
    EXPECT_EQ(jukebox.drives[0].device.scsi[2], 6);
    EXPECT_FALSE(jukebox.drives[0].enabled);
    EXPECT_EQ(jukebox.drives[0].values[0], 7U);
    EXPECT_EQ(jukebox.drives[0].values[1], UINT64_MAX);
    ASSERT_EQ(jukebox.magazines.size(), 2U);
    EXPECT_TRUE(jukebox.magazines[0].present);
    const embedded::FarmMagazine& magazine = jukebox.magazines[1];
    EXPECT_EQ(magazine.slotCount, 10);
    EXPECT_FALSE(magazine.present);
    ASSERT_EQ(magazine.oddSlots.size(), 4U);
    EXPECT_EQ(magazine.oddSlots[0].state, SlotState::Unknown);
    EXPECT_EQ(magazine.oddSlots[2].number, 3);
    EXPECT_EQ(magazine.oddSlots[2].state, SlotState::NotPresent);
    EXPECT_EQ(magazine.oddSlots[3].state, SlotState::ScanFailed);
}

TEST(LayoutReader, ReadsEveryFormOfASide) {
    const Farm farm = FarmOf(R"(
format = 1
shelf = [
  { type = "DVD-RAM", a = 5, b = "blank" },
  { type = "DVD-ROM", a = 6 },
  { type = "CD-R", a = "bad" },
  { type = 19, a = { volume = 8, content = "bad", finalization = "closed", sequential = true, part = 3 } },
  { type = "unknown", a = "no file system" },
]
)");
    ASSERT_EQ(farm.shelf.size(), 5U);
    EXPECT_EQ(farm.shelf[0].type, 12U);
    ASSERT_EQ(farm.shelf[0].sides.size(), 2U);
    const embedded::FarmSide& rewritable = farm.shelf[0].sides[0];
    EXPECT_EQ(rewritable.volume, 5);
    EXPECT_EQ(rewritable.content, Content::FileSystem);
    EXPECT_EQ(rewritable.finalization, Finalization::NotFinalized);
    EXPECT_FALSE(rewritable.sequential);
    EXPECT_EQ(farm.shelf[0].sides[1].content, Content::Blank);
    const embedded::FarmSide& readOnly = farm.shelf[1].sides[0];
    EXPECT_EQ(readOnly.finalization, Finalization::Closed);
    EXPECT_TRUE(readOnly.sequential);
    EXPECT_EQ(farm.shelf[2].sides[0].content, Content::Bad);
    EXPECT_EQ(farm.shelf[2].sides[0].finalization, Finalization::Unknown);
    EXPECT_EQ(farm.shelf[3].type, 19U);
    const embedded::FarmSide& table = farm.shelf[3].sides[0];
    EXPECT_EQ(table.volume, 8);
    EXPECT_EQ(table.content, Content::Bad);
    EXPECT_EQ(table.finalization, Finalization::Closed);
    EXPECT_TRUE(table.sequential);
    EXPECT_EQ(table.part, 3);
    EXPECT_EQ(farm.shelf[4].type, 254U);
    EXPECT_EQ(farm.shelf[4].sides[0].content, Content::NoFileSystem);
}

TEST(LayoutReader, ReadsEveryFieldOfAVolume) {
    const Farm farm = FarmOf(R"(
format = 1
volume = [ { id = 5, type = "mirror", enabled = false, state = 9, label = { hex = "4bf6" }, file_system = "FS", total = "18446744073709551615", free = 4, directories = ["a", { hex = "ff" }], value1 = -7, value2 = 4294967295 } ]
)");
    ASSERT_EQ(farm.volumes.size(), 1U);
    const embedded::FarmVolume& volume = farm.volumes[0];
    EXPECT_EQ(volume.id, 5);
    EXPECT_EQ(volume.type, embedded::VolumeType::Mirror);
    EXPECT_FALSE(volume.enabled);
    EXPECT_EQ(volume.state, 9);
    EXPECT_EQ(volume.label, "K\xF6");
    EXPECT_EQ(volume.fileSystem, "FS");
    EXPECT_EQ(volume.total, UINT64_MAX);
    EXPECT_EQ(volume.free, 4U);
    EXPECT_EQ(volume.directories, (std::vector<std::string>{"a", "\xFF"}));
    EXPECT_EQ(volume.value1, -7);
    EXPECT_EQ(volume.value2, 4294967295U);
}

TEST(LayoutReader, FaultInTheTomlNamesItsLine) {
    const std::vector<std::string> problems = ProblemsOf("format = 1\nrunning = maybe\n");
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_TRUE(problems[0].starts_with("farm.toml:2: ")) << problems[0];
}

TEST(LayoutReader, EveryFaultIsListedWithLineAndField) {
    const std::vector<std::string> expected = {
        "farm.toml:1: format: must be 1",
        "farm.toml:2: running: must be true or false",
        R"(farm.toml:8: volume[1].type: must be one of "disc", "mirror", "volume set")",
        "farm.toml:8: volume[1].total: must be an integer from 0 to 18446744073709551615",
        "farm.toml:9: volume[2]: must be a table",
        "farm.toml:10: volume[3].id: is missing",
        "farm.toml:10: volume[3].label: is 256 bytes long; the limit is 255",
        "farm.toml:10: volume[3].directories: must be an array of strings",
        "farm.toml:4: shelf[1].type: is not a media type",
        "farm.toml:4: shelf[1].a: must be a volume ID, a content word or a table",
        "farm.toml:5: shelf[2].type: is missing",
        "farm.toml:5: shelf[2].a: is missing",
        "farm.toml:3: colour: is not a known field",
    };
    EXPECT_EQ(ProblemsOf("format = 2\n"
                         "running = 1\n"
                         "colour = \"red\"\n"
                         "shelf = [ { type = \"DVD\", a = 0 },\n"
                         "  { } ]\n"
                         "\n"
                         "volume = [\n"
                         "  { id = 1, type = \"tape\", total = -1 },\n"
                         "  7,\n"
                         "  { label = \"" +
                         std::string(256, 'x') + "\", directories = \"x\" } ]\n"),
              expected);
}

TEST(LayoutReader, CountThatDoesNotMatchIsAFault) {
    const std::vector<std::string> expected = {
        "farm.toml:6: jukebox[1].drive_count: is 1, but there are 0",
        "farm.toml:7: jukebox[1].slot_count: is 5, but there are 4",
        "farm.toml:2: volume_count: is 3, but there are 0",
    };
    EXPECT_EQ(ProblemsOf("format = 1\n"
                         "volume_count = 3\n"
                         "[[jukebox]]\n"
                         "id = 1\n"
                         "name = \"Box\"\n"
                         "drive_count = 1\n"
                         "slot_count = 5\n"
                         "magazine = [ { slots = 4 } ]\n"),
              expected);
}

TEST(LayoutReader, FormatOrCountThatIsNoNumberIsOneFault) {
    const std::vector<std::string> expected = {
        "farm.toml:1: format: must be an integer",
        "farm.toml:5: jukebox[1].magazine_count: must be an integer",
        "farm.toml:6: jukebox[1].slot_count: must be from 0 to 2147483647",
    };
    EXPECT_EQ(ProblemsOf("format = \"1\"\n"
                         "[[jukebox]]\n"
                         "id = 1\n"
                         "name = \"Box\"\n"
                         "magazine_count = \"one\"\n"
                         "slot_count = -4\n"
                         "magazine = [ { slots = 4 } ]\n"),
              expected);
}

TEST(LayoutReader, NumbersOutOfRangeAreFaults) {
    const std::vector<std::string> expected = {
        "farm.toml:3: jukebox[1].id: must be from 1 to 2147483647",
        "farm.toml:3: jukebox[1].name: contains a NUL byte",
        "farm.toml:3: jukebox[1].vendor: is 9 bytes long; the limit is 8",
        "farm.toml:3: jukebox[1].scsi: must be an array of three integers",
        "farm.toml:3: jukebox[1].magazine[1].slots: must be from 0 to 10000000",
        "farm.toml:3: jukebox[1].magazine[1].unknown: must contain only integers from 1 up",
    };
    EXPECT_EQ(ProblemsOf("format = 1\n"
                         "jukebox = [\n"
                         "  { id = 2147483648, name = \"a\\u0000b\", vendor = \"123456789\", scsi = [1, 2], "
                         "magazine = [ { slots = -1, unknown = [0] } ] } ]\n"),
              expected);
}

}  // namespace
}  // namespace embedded_test
