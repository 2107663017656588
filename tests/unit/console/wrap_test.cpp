#include "krvcmd/console/text/wrap.h"

#include <gtest/gtest.h>

#include <cstdint>

// In a locale whose characters are bytes.
namespace {

using namespace Ostrel::UI::Console;

struct WrapCase {
    uint32_t maxWidth;
    std::string_view text;
    std::string_view wrapped;
};

TEST(WrapText, BreaksLongLinesAtTheirLastBlankThatFits) {
    const WrapCase cases[] = {
        {10, "", ""},
        {10, "0123456789", "0123456789"},
        // 11 characters; the last blank at a position up to 10 is at 4.
        {10, "0123 56789a", "0123\n56789a"},
        // The blank at position 10 itself is dropped: ten characters are left.
        {10, "0123456789 b", "0123456789\nb"},
        {10, "01 3456789 bc", "01 3456789\nbc"},
        // Several breaks.
        {5, "aa bb cc dd", "aa bb\ncc dd"},
        {4, "aa bb cc dd", "aa\nbb\ncc\ndd"},
        // One blank is dropped; the others stay.
        {4, "aa   bb", "aa  \nbb"},
        // A word that is too long stays whole; lines break before and after it.
        {4, "abcdefgh", "abcdefgh"},
        {4, "a bcdefgh", "a\nbcdefgh"},
        // No blank up to position 4: breaking stops for the rest of the line, whatever comes later.
        {4, "abcdefgh i jklm n", "abcdefgh i jklm n"},
        // A line may break at its first character, a blank: an empty line.
        {4, " abcdefgh", "\nabcdefgh"},
    };
    for (const WrapCase& c : cases)
        EXPECT_EQ(WrapText(c.text, c.maxWidth), c.wrapped) << c.text;
}

TEST(WrapText, CountsTheLineBreakAsACharacterOfItsLine) {
    // Nine characters and the line break are ten.
    EXPECT_EQ(WrapText("0123 5678\n", 10), "0123 5678\n");
    // Ten and the line break are eleven: broken.
    EXPECT_EQ(WrapText("0123 56789\n", 10), "0123\n56789\n");
    EXPECT_EQ(WrapText("0123 56789", 10), "0123 56789");
}

TEST(WrapText, WrapsEveryLineByItself) {
    EXPECT_EQ(WrapText("aa bb cc\n\ndd ee ff\n", 6), "aa bb\ncc\n\ndd ee\nff\n");
}

TEST(WrapText, DoesNotWrapInWidthZero) {
    const std::string text = std::string(2000, 'x') + " " + std::string(2000, 'y') + "\n";
    EXPECT_EQ(WrapText(text, 0), text);
}

// "  S - " has 6 characters.
TEST(DefinitionText, WritesTermAndDescriptionInOneLine) {
    EXPECT_EQ(DefinitionText("S", "Number of slots.", 80), "  S - Number of slots.\n");
    EXPECT_EQ(DefinitionText("", "", 80), "   - \n");
}

TEST(DefinitionText, SplitsADescriptionThatDoesNotFitOnceAndAtACharacter) {
    // 6 + 10 = 16 fits 17.
    EXPECT_EQ(DefinitionText("S", "abcdefghij", 17), "  S - abcdefghij\n");
    // 16 is not below 16: 16 - 6 - 1 = 9 characters in the first line.
    EXPECT_EQ(DefinitionText("S", "abcdefghij", 16), "  S - abcdefghi\n\tj\n");
    // 10 - 6 - 1 = 3; the rest is not broken again, and blanks do not matter.
    EXPECT_EQ(DefinitionText("S", "ab cd ef gh ij kl mn op qr st", 10),
              "  S - ab \n\tcd ef gh ij kl mn op qr st\n");
}

TEST(DefinitionText, PutsTheWholeDescriptionIntoTheSecondLineWithoutRoomInTheFirst) {
    EXPECT_EQ(DefinitionText("S", "abc", 7), "  S - \n\tabc\n");
    EXPECT_EQ(DefinitionText("S", "abc", 1), "  S - \n\tabc\n");
}

TEST(DefinitionText, DoesNotSplitInWidthZero) {
    const std::string description(3000, 'x');
    EXPECT_EQ(DefinitionText("S", description, 0), "  S - " + description + "\n");
}

}  // namespace
