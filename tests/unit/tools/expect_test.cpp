#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimExpect : public ToolFixture {
  protected:
    void SetUp() override { Done({"init"}); }

    ToolResult Expect(const std::string& lines) const {
        return RunKrvsim({"expect", WriteFile("expected", lines)});
    }

    // What is reported of one line that does not hold, behind the line itself.
    std::string Instead(const std::string& line) const {
        const ToolResult result = Expect(line + "\n");
        EXPECT_EQ(result.status, 1) << line;
        const std::string start = "krvsim: " + (m_home.GetFolder() / "expected").string() + ":1: ";
        EXPECT_TRUE(result.err.starts_with(start)) << result.err;
        const std::string rest = result.err.substr(std::min(start.size(), result.err.size()));
        return rest.starts_with(line + ": ") ? rest.substr(line.size() + 2) : rest;
    }
};

TEST_F(KrvsimExpect, LinesThatHold) {
    const ToolResult result = Expect(
        "# the demonstration farm\n"
        "\n"
        "volume 33 label \"Sales 2004\"  # a comment\n"
        "volume 33 active\n"
        "volume 33 file-system \"UDF 2.01\"\n"
        "volume 33 in MyBox 1 3\n"
        "volume 9999 absent\n"
        "slot MyBox 1 3 full\n"
        "slot @8 1 3 volume 34\n"
        "jukebox 8 enabled\n"
        "jukebox @8 name MyBox\n"
        "jukebox Nobody absent\n"
        "magazine MyBox 1 present\n"
        "drive MyBox 1 enabled\n"
        "exported MyBox 0\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "13 expectations hold.\n");
}

TEST_F(KrvsimExpect, SaysWhatIsTheCaseInstead) {
    EXPECT_EQ(Instead("volume 33 label Sales"), "it is \"Sales 2004\"\n");
    EXPECT_EQ(Instead("volume 33 offline"), "it is active\n");
    EXPECT_EQ(Instead("volume 9999 active"), "there is no volume 9999\n");
    EXPECT_EQ(Instead("volume 33 in MyBox 1 1"), "the slot holds something else\n");
    EXPECT_EQ(Instead("slot MyBox 1 3 empty"), "it is full\n");
    EXPECT_EQ(Instead("slot MyBox 1 3 blank"), "its medium is not blank\n");
    EXPECT_EQ(Instead("slot MyBox 1 9999 empty"), "there is no slot 9999\n");
    EXPECT_EQ(Instead("slot MyBox 9 1 empty"), "there is no magazine 9\n");
    EXPECT_EQ(Instead("slot Nobody 1 1 empty"), "there is no jukebox Nobody\n");
    EXPECT_EQ(Instead("jukebox MyBox disabled"), "it is enabled\n");
    EXPECT_EQ(Instead("exported MyBox 1"), "there are 0\n");
    EXPECT_EQ(Instead("status 0"), "it is not known here\n");
    EXPECT_EQ(Instead("calls 0"), "it is not known here\n") << "the journal is off";
}

TEST_F(KrvsimExpect, CountsCallsOfTheJournal) {
    Done({"journal", "--on"});
    {
        Client client;
        EXPECT_TRUE(client.Export({8, 0, 2}).ok);
    }
    const ToolResult result =
        Expect("calls export 1\ncalls KrvMediaExport 1\ncalls format 0\ncalls failed 0\n");
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST_F(KrvsimExpect, EveryLineThatCannotBeReadIsReported) {
    const ToolResult result = Expect(
        "volum 33 active\n"
        "volume x active\n"
        "volume 33\n"
        "volume 33 label \"open\n"
        "volume 33 active now\n"
        "calls expert 1\n"
        "changes wiped 1\n"
        "jukebox MyBox broken\n"
        "volume 33 active\n");
    const std::string file = "krvsim: " + (m_home.GetFolder() / "expected").string() + ":";
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              file +
                  "1: \"volum\" is none of: volume, slot, jukebox, magazine, drive, waiting, exported, "
                  "changes, calls, status\n" +
                  file + "2: \"x\" is not the ID of a volume\n" + file +
                  "3: a property of the volume is missing\n" + file +
                  "4: the closing quotation mark is missing\n" + file + "5: \"now\" is too much\n" + file +
                  "6: \"expert\" is not a function\n" + file + "7: \"wiped\" is not a kind of change\n" +
                  file + "8: \"broken\" is none of: enabled, disabled, name, absent\n");
}

TEST_F(KrvsimExpect, FileThatIsNotThere) {
    EXPECT_EQ(Failed({"expect", "nowhere/expected"}), "krvsim: nowhere/expected: cannot be read\n");
}

}  // namespace
}  // namespace embedded_test
