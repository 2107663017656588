#include <gtest/gtest.h>

#include "krvcmd/console/writer/output_object.h"
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

struct WrapCase {
    uint32_t maxWidth;
    std::string_view text;
    std::string_view printed;
};

TEST_F(PrintText, BreaksLongLinesAtTheirLastBlankThatFits) {
    const WrapCase cases[] = {
        {10, "", ""},
        {10, "0123456789", "0123456789"},
        // 11 characters; the last blank at a position up to 10 is at 4.
        {10, "0123 56789a", "0123\n56789a"},
        // The blank at position 10 itself may go: ten characters are left.
        {10, "0123456789 b", "0123456789\nb"},
        {10, "01 3456789 bc", "01 3456789\nbc"},
        // Several breaks.
        {5, "aa bb cc dd", "aa bb\ncc dd"},
        {4, "aa bb cc dd", "aa\nbb\ncc\ndd"},
        // The blank goes; more blanks stay.
        {4, "aa   bb", "aa  \nbb"},
        // A word that is too long stays whole; in front of it and behind it lines break.
        {4, "abcdefgh", "abcdefgh"},
        {4, "a bcdefgh", "a\nbcdefgh"},
        // No blank up to position 4: breaking stops for the rest of the line, whatever comes later.
        {4, "abcdefgh i jklm n", "abcdefgh i jklm n"},
        // A blank in front is a place to break, too: an empty line.
        {4, " abcdefgh", "\nabcdefgh"},
    };
    for (const WrapCase& c : cases)
        EXPECT_EQ(Printed(c.maxWidth, c.text), c.printed) << c.text;
}

TEST_F(PrintText, CountsTheLineBreakAsACharacterOfItsLine) {
    // Nine characters and the line break are ten.
    EXPECT_EQ(Printed(10, "0123 5678\n"), "0123 5678\n");
    // Ten and the line break are eleven: broken.
    EXPECT_EQ(Printed(10, "0123 56789\n"), "0123\n56789\n");
    EXPECT_EQ(Printed(10, "0123 56789"), "0123 56789");
}

TEST_F(PrintText, WrapsEveryLineByItself) {
    EXPECT_EQ(Printed(6, "aa bb cc\n\ndd ee ff\n"), "aa bb\ncc\n\ndd ee\nff\n");
}

TEST_F(PrintText, DoesNotWrapInWidthZero) {
    const std::string text = std::string(2000, 'x') + " " + std::string(2000, 'y') + "\n";
    EXPECT_EQ(Printed(0, text), text);
}

TEST_F(PrintText, ShowsPercentSignsAsFormattedPrintingWould) {
    EXPECT_EQ(Printed(80, "100%% of %s %n"), "100% of %s %n");
}

TEST_F(PrintText, CountsPercentSignsForWrappingBeforeTheyAreShown) {
    // "aa 50%%" is 7 long, "aa 50%" would be 6.
    EXPECT_EQ(Printed(6, "aa 50%%"), "aa\n50%");
}

}  // namespace
