#include <gtest/gtest.h>

#include "krvcmd/console/writer/output_object.h"
#include "tests/support/captured_output.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::OutputOf;

std::string Printed(uint32_t maxWidth, std::string_view term, std::string_view description) {
    COutputObject writer;
    writer.SetMaxWidth(maxWidth);
    return OutputOf([&] { writer.PrintDefinition(term, description); });
}

// "  S - " has 6 characters.
TEST(PrintDefinition, WritesTermAndDescriptionInOneLine) {
    EXPECT_EQ(Printed(80, "S", "Number of slots."), "  S - Number of slots.\n");
    EXPECT_EQ(Printed(80, "", ""), "   - \n");
}

TEST(PrintDefinition, SplitsADescriptionThatDoesNotFitOnceAndAtACharacter) {
    // 6 + 10 = 16 fits 17.
    EXPECT_EQ(Printed(17, "S", "abcdefghij"), "  S - abcdefghij\n");
    // 16 is not below 16: 16 - 6 - 1 = 9 characters in the first line.
    EXPECT_EQ(Printed(16, "S", "abcdefghij"), "  S - abcdefghi\n\tj\n");
    // 10 - 6 - 1 = 3; the rest is not broken again, and blanks do not matter.
    EXPECT_EQ(Printed(10, "S", "ab cd ef gh ij kl mn op qr st"), "  S - ab \n\tcd ef gh ij kl mn op qr st\n");
}

TEST(PrintDefinition, PutsTheWholeDescriptionIntoTheSecondLineWithoutRoomInTheFirst) {
    EXPECT_EQ(Printed(7, "S", "abc"), "  S - \n\tabc\n");
    EXPECT_EQ(Printed(1, "S", "abc"), "  S - \n\tabc\n");
}

TEST(PrintDefinition, DoesNotSplitInWidthZero) {
    const std::string description(3000, 'x');
    EXPECT_EQ(Printed(0, "S", description), "  S - " + description + "\n");
}

TEST(PrintDefinition, ReplacesNoPlaceholders) {
    EXPECT_EQ(Printed(80, "S", "[CmdLine]"), "  S - [CmdLine]\n");
}

TEST(PrintDefinition, ShowsADoubledPercentSignAsOne) {
    EXPECT_EQ(Printed(80, "z", "in %% of 100% total"), "  z - in % of 100% total\n");
}

}  // namespace
