#include "krvcmd/console/text/display_width.h"

#include <gtest/gtest.h>

// In a locale whose characters are bytes.
namespace {

using namespace Ostrel::UI::Console;

TEST(DisplayText, CountsBytes) {
    EXPECT_EQ(DisplayLength(""), 0U);
    EXPECT_EQ(DisplayLength("abc"), 3U);
    EXPECT_EQ(DisplayLength("a\tb\n"), 4U);
    EXPECT_EQ(DisplayLength("M\xc3\xbcller"), 7U);
}

TEST(DisplayText, GivesTheBeginning) {
    EXPECT_EQ(LeadingPart("abcdef", 4), "abcd");
    EXPECT_EQ(LeadingPart("abcdef", 0), "");
    EXPECT_EQ(LeadingPart("abcdef", 6), "abcdef");
    EXPECT_EQ(LeadingPart("abcdef", 7), "abcdef");
    EXPECT_EQ(LeadingPart("M\xc3\xbcller", 2), "M\xc3");
}

TEST(DisplayText, GivesTheEnd) {
    EXPECT_EQ(TrailingPart("abcdef", 4), "cdef");
    EXPECT_EQ(TrailingPart("abcdef", 0), "");
    EXPECT_EQ(TrailingPart("abcdef", 6), "abcdef");
    EXPECT_EQ(TrailingPart("abcdef", 7), "abcdef");
    EXPECT_EQ(TrailingPart("M\xc3\xbcller", 5), "\xbcller");
}

}  // namespace
