// Not on Windows: texts are in the ANSI code page there, where every byte is a character.
#include <gtest/gtest.h>

#include "krvcmd/console/text/display_width.h"

// In a UTF-8 locale.
namespace {

using namespace Ostrel::UI::Console;

constexpr std::string_view kMueller = "M\xc3\xbcller";           // Müller
constexpr std::string_view kTokyo = "\xe6\x9d\xb1\xe4\xba\xac";  // two characters of two columns each
constexpr std::string_view kAccented = "ae\xcc\x81z";            // a, e with a combining accent, z

TEST(Utf8DisplayText, CountsColumns) {
    EXPECT_EQ(DisplayLength("abc"), 3U);
    EXPECT_EQ(DisplayLength(kMueller), 6U);
    EXPECT_EQ(DisplayLength(kTokyo), 4U);
    EXPECT_EQ(DisplayLength(kAccented), 3U);
    EXPECT_EQ(DisplayLength("\xf0\x9f\x98\x80"), 2U);  // an emoji
}

TEST(Utf8DisplayText, CountsAByteThatBelongsToNoCharacterAsOne) {
    EXPECT_EQ(DisplayLength("a\xff"
                            "b"),
              3U);
    EXPECT_EQ(DisplayLength("\xe6\x9d"), 2U);
}

TEST(Utf8DisplayText, CountsEveryByteOfAControlCharacter) {
    EXPECT_EQ(DisplayLength("\x1b[0m"), 4U);
    EXPECT_EQ(DisplayLength("\xc2\x9b"
                            "\xc3\xbc"),
              3U);
    EXPECT_EQ(DisplayLength("\xc3\xbc\n"), 2U);
}

TEST(Utf8DisplayText, CutsNoCharacterAtTheBeginning) {
    EXPECT_EQ(LeadingPart(kMueller, 1), "M");
    EXPECT_EQ(LeadingPart(kMueller, 2), "M\xc3\xbc");
    EXPECT_EQ(LeadingPart(kMueller, 6), kMueller);
    EXPECT_EQ(LeadingPart(kTokyo, 1), "");
    EXPECT_EQ(LeadingPart(kTokyo, 2), kTokyo.substr(0, 3));
    EXPECT_EQ(LeadingPart(kTokyo, 3), kTokyo.substr(0, 3));
    EXPECT_EQ(LeadingPart(kTokyo, 4), kTokyo);
    // A mark stays with its character.
    EXPECT_EQ(LeadingPart(kAccented, 2), "ae\xcc\x81");
    EXPECT_EQ(LeadingPart(kAccented, 1), "a");
}

TEST(Utf8DisplayText, CutsNoCharacterAtTheEnd) {
    EXPECT_EQ(TrailingPart(kMueller, 4), "ller");
    EXPECT_EQ(TrailingPart(kMueller, 5), "\xc3\xbcller");
    EXPECT_EQ(TrailingPart(kMueller, 6), kMueller);
    EXPECT_EQ(TrailingPart(kTokyo, 0), "");
    EXPECT_EQ(TrailingPart(kTokyo, 1), "");
    EXPECT_EQ(TrailingPart(kTokyo, 2), kTokyo.substr(3));
    EXPECT_EQ(TrailingPart(kTokyo, 3), kTokyo.substr(3));
    // A mark goes with its character.
    EXPECT_EQ(TrailingPart(kAccented, 1), "z");
    EXPECT_EQ(TrailingPart(kAccented, 2), "e\xcc\x81z");
}

}  // namespace
