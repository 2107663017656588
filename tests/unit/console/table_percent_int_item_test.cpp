#include "krvcmd/console/table/table_item.h"

#include <gtest/gtest.h>

namespace {

using namespace Ostrel::UI::Console;

TEST(TablePercentIntItem, ShowsTheUsedShareWithADoubledPercentSign) {
    EXPECT_EQ(CTablePercentIntItem(12, 25, 100).Render(0), "75%%");
    EXPECT_EQ(CTablePercentIntItem(12, 0, 7).Render(0), "100%%");
    EXPECT_EQ(CTablePercentIntItem(12, 1, 3).Render(0), "66%%");
    EXPECT_EQ(CTablePercentIntItem(12, 150, 100).Render(0), "-50%%");
}

TEST(TablePercentIntItem, ShowsZeroWithoutATotal) {
    EXPECT_EQ(CTablePercentIntItem(12, 5, 0).Render(0), "0%%");
    EXPECT_EQ(CTablePercentIntItem(12, 5, -5).Render(0), "0%%");
}

TEST(TablePercentIntItem, IsRenderedOnePositionWiderThanTheColumn) {
    // Six positions for a column of five: one of the two per cent signs does not show.
    EXPECT_EQ(CTablePercentIntItem(12, 25, 100).Render(5), "  75%%");
    EXPECT_EQ(CTablePercentIntItem(12, 25, 100).Render(3), "75%%");
}

TEST(TablePercentIntItem, ShowsFullStopsWhenItDoesNotFit) {
    // A column of 2 renders into 3, of 1 into 2.
    EXPECT_EQ(CTablePercentIntItem(12, 25, 100).Render(2), "...");
    EXPECT_EQ(CTablePercentIntItem(12, 25, 100).Render(1), "..");
    EXPECT_EQ(CTablePercentIntItem(12, 0, 100).Render(3), "...");
}

TEST(TablePercentIntItem, ComparesByItsShare) {
    const CTablePercentIntItem nine(12, 91, 100);
    const CTablePercentIntItem ten(12, 180, 200);
    EXPECT_EQ(nine.GetValue(), 9);
    EXPECT_EQ(nine.Compare(ten), -1);
    EXPECT_EQ(ten.Compare(CTablePercentIntItem(12, 90, 100)), 0);
}

}  // namespace
