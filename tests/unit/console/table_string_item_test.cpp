#include "krvcmd/console/table/table_item.h"

#include <gtest/gtest.h>

namespace {

using namespace Ostrel::UI::Console;

std::string Rendered(std::string_view text, uint32_t width) {
    return CTableStringItem(15, text).Render(width);
}

int32_t Compared(std::string_view left, std::string_view right) {
    return CTableStringItem(15, left).Compare(CTableStringItem(15, right));
}

TEST(TableStringItem, AlignsToTheLeft) {
    EXPECT_EQ(Rendered("abc", 6), "abc   ");
    EXPECT_EQ(Rendered("abc", 3), "abc");
    EXPECT_EQ(Rendered("", 2), "  ");
}

TEST(TableStringItem, ShowsItsFullTextInWidthZero) {
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 0), "ABCDEFGHIJ");
}

TEST(TableStringItem, KeepsItsEndWhenItDoesNotFit) {
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 9), "...EFGHIJ");
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 6), "...HIJ");
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 4), "...J");
}

TEST(TableStringItem, HasNoRoomForFullStopsInThreePositions) {
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 3), "HIJ");
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 2), "IJ");
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 1), "J");
}

TEST(TableStringItem, FollowsAnotherAlignment) {
    CTableStringItem item(15, "abc");
    item.SetAlignment(Alignment::Centre);
    EXPECT_EQ(item.Render(6), " abc  ");
    EXPECT_EQ(item.Render(7), "  abc  ");
    item.SetAlignment(Alignment::Right);
    EXPECT_EQ(item.Render(6), "   abc");
}

TEST(TableStringItem, TakesANewText) {
    CTableStringItem item(15, "abc");
    item.SetText("another text");
    EXPECT_EQ(item.Render(0), "another text");
    EXPECT_EQ(item.GetValue(), 0);
}

TEST(TableStringItem, ComparesNumbersBehindASeparatorByValue) {
    EXPECT_EQ(Compared("vol-2", "vol-10"), -1);
    EXPECT_EQ(Compared("vol-10", "vol-2"), 1);
    EXPECT_EQ(Compared("vol-2", "vol-02"), 0);
    // A text without a number is one with the number 0.
    EXPECT_EQ(Compared("vol", "vol-1"), -1);
    EXPECT_EQ(Compared("vol", "vol-0"), 0);
    // The prefix decides first, whatever the numbers are.
    EXPECT_EQ(Compared("alpha-10", "beta-2"), -1);
    EXPECT_EQ(Compared("beta-2", "alpha-10"), 1);
    // The separators are dropped.
    EXPECT_EQ(Compared("vol-2", "vol.2"), 0);
}

TEST(TableStringItem, ComparesOtherTextsByteByByte) {
    EXPECT_EQ(Compared("vol2", "vol10"), 1);
    EXPECT_EQ(Compared("vol10", "vol2"), -1);
    EXPECT_EQ(Compared("abc", "abc"), 0);
    EXPECT_EQ(Compared("ab", "abc"), -1);
    EXPECT_EQ(Compared("B", "a"), -1);
    // Bytes are unsigned.
    EXPECT_EQ(Compared("\xe4", "z"), 1);
    EXPECT_EQ(Compared("9", "10"), 1);
}

TEST(TableStringItem, ComparesEverythingByteByByteWhenNotNatural) {
    CTableStringItem two(15, "vol-2");
    two.SetNaturalCompare(false);
    EXPECT_EQ(two.Compare(CTableStringItem(15, "vol-10")), 1);
    EXPECT_EQ(two.Compare(CTableStringItem(15, "vol-2")), 0);
    EXPECT_EQ(two.Compare(CTableStringItem(15, "vol-20000")), -1);
}

TEST(TableStringItem, ComparesWithTheTextOfANumber) {
    EXPECT_EQ(CTableStringItem(1, "9").Compare(CTableIntItem(1, 10, NumberStyle::Plain)), 1);
    EXPECT_EQ(CTableStringItem(1, "10").Compare(CTableIntItem(1, 10, NumberStyle::Plain)), 0);
}

}  // namespace
