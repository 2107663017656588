#include "krvcmd/console/writer/output_object.h"

#include <gtest/gtest.h>

#include <string_view>

#include "tests/support/captured_output.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::OutputOf;

class PrintText : public testing::Test {
  public:
    PrintText() { krvcmd::GetProgramNames() = {"krvcmd", "Carvoline"}; }
    ~PrintText() override { krvcmd::GetProgramNames() = {}; }
    PrintText(const PrintText&) = delete;
    PrintText& operator=(const PrintText&) = delete;

  protected:
    // What PrintText writes in lines of `maxWidth`.
    static std::string Printed(uint32_t maxWidth, std::string_view text) {
        COutputObject writer;
        writer.SetMaxWidth(maxWidth);
        return OutputOf([&] { writer.PrintText(Stream::StandardOutput, text); });
    }
};

TEST_F(PrintText, ReplacesEveryPlaceholder) {
    EXPECT_EQ(Printed(80, "[CmdLine] help [CmdLine]\n"), "krvcmd help krvcmd\n");
    EXPECT_EQ(Printed(80, "[ProductName] and [CmdLine] of [ProductName]"),
              "Carvoline and krvcmd of Carvoline");
}

TEST_F(PrintText, LeavesOtherBracketsAlone) {
    EXPECT_EQ(Printed(80, "[cmdline] [CmdLine [Command] []"), "[cmdline] [CmdLine [Command] []");
}

TEST_F(PrintText, ReplacesPlaceholdersThatAReplacementCompletes) {
    krvcmd::GetProgramNames() = {"CmdLine]", "[CmdLine]"};
    // "[[CmdLine]" becomes "[CmdLine]", which is a placeholder again and becomes "CmdLine]". The product name
    // comes later and is not looked through for the command name.
    EXPECT_EQ(Printed(80, "[[CmdLine] [ProductName]"), "CmdLine] [CmdLine]");
}

TEST_F(PrintText, TakesTheNamesAtItsConstruction) {
    const COutputObject unused;
    COutputObject writer;
    krvcmd::GetProgramNames() = {"other", "Other"};
    EXPECT_EQ(OutputOf([&] { writer.PrintText(Stream::StandardOutput, "[CmdLine] [ProductName]"); }),
              "krvcmd Carvoline");
}

TEST_F(PrintText, WrapsAtAThousandCharactersUnlessToldOtherwise) {
    COutputObject writer;
    EXPECT_EQ(writer.GetMaxWidth(), 1000U);
    // A blank at position 1000 is the last one where the line may be broken.
    const std::string text = std::string(1000, 'x') + " y";
    EXPECT_EQ(OutputOf([&] { writer.PrintText(Stream::StandardOutput, text); }),
              std::string(1000, 'x') + "\ny");
}

TEST_F(PrintText, ReplacesPlaceholdersBeforeItWraps) {
    // "krvcmd help" is 11 long, "[CmdLine] help" would be 14.
    EXPECT_EQ(Printed(11, "[CmdLine] help"), "krvcmd help");
}

TEST_F(PrintText, ShowsPercentSignsAsFormattedPrintingWould) {
    EXPECT_EQ(Printed(80, "100%% of %s %n"), "100% of %s %n");
}

TEST_F(PrintText, CountsPercentSignsForWrappingBeforeTheyAreShown) {
    // "aa 50%%" is 7 long, "aa 50%" would be 6.
    EXPECT_EQ(Printed(6, "aa 50%%"), "aa\n50%");
}

TEST(PrintDefinition, SplitsADescriptionThatDoesNotFitTheLine) {
    COutputObject writer;
    writer.SetMaxWidth(16);
    EXPECT_EQ(OutputOf([&] { writer.PrintDefinition("S", "abcdefghij"); }), "  S - abcdefghi\n\tj\n");
}

TEST(PrintDefinition, ReplacesNoPlaceholders) {
    COutputObject writer;
    EXPECT_EQ(OutputOf([&] { writer.PrintDefinition("S", "[CmdLine]"); }), "  S - [CmdLine]\n");
}

TEST(PrintDefinition, ShowsADoubledPercentSignAsOne) {
    COutputObject writer;
    EXPECT_EQ(OutputOf([&] { writer.PrintDefinition("z", "in %% of 100% total"); }),
              "  z - in % of 100% total\n");
}

}  // namespace
