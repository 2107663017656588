#include "krvcmd/console/table/table_item.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Ostrel::UI::Console;

CTableIntItem Plain(int64_t value) {
    return {1, value, NumberStyle::Plain};
}

TEST(TableIntItem, ShowsItsValueInDecimal) {
    EXPECT_EQ(Plain(0).Render(0), "0");
    EXPECT_EQ(Plain(-17).Render(0), "-17");
    EXPECT_EQ(Plain(std::numeric_limits<int64_t>::max()).Render(0), "9223372036854775807");
    EXPECT_EQ(Plain(std::numeric_limits<int64_t>::min()).Render(0), "-9223372036854775808");
}

TEST(TableIntItem, NeedsNoCareWhenItIsShown) {
    EXPECT_TRUE(Plain(-17).IsPlain());
}

TEST(TableIntItem, AlignsToTheRight) {
    EXPECT_EQ(Plain(123).Render(5), "  123");
    EXPECT_EQ(Plain(123).Render(4), " 123");
    EXPECT_EQ(Plain(123).Render(3), "123");
}

TEST(TableIntItem, ShowsFullStopsWhenItDoesNotFit) {
    EXPECT_EQ(Plain(123).Render(1), ".");
    EXPECT_EQ(Plain(123).Render(2), "..");
    EXPECT_EQ(Plain(123456).Render(3), "...");
    // Not filled up to the width.
    EXPECT_EQ(Plain(123456).Render(4), "...");
    EXPECT_EQ(Plain(123456).Render(5), "...");
    EXPECT_EQ(Plain(123456).Render(6), "123456");
}

TEST(TableIntItem, FollowsAnotherAlignment) {
    CTableIntItem item(1, 123, NumberStyle::Plain);
    item.SetAlignment(Alignment::Centre);
    EXPECT_EQ(item.Render(6), " 123  ");
    item.SetAlignment(Alignment::Left);
    EXPECT_EQ(item.Render(6), "123   ");
}

TEST(TableIntItem, ShowsCapacitiesInWholeMByteUnlessAskedForMore) {
    CTableIntItem item(11, 1'572'864, NumberStyle::WithUnit);  // 1.5 MByte
    EXPECT_EQ(item.Render(0), "2 MByte");
    item.FormatValue(CapacityPrecision::TwoDecimals);
    EXPECT_EQ(item.Render(0), "1.50 MByte");
    item.SetValue(681'574'400);
    EXPECT_EQ(item.Render(0), "650 MByte");
}

TEST(TableIntItem, KeepsPlainNumbersPlainInEveryPrecision) {
    CTableIntItem item(26, 1'572'864, NumberStyle::Plain);
    item.FormatValue(CapacityPrecision::TwoDecimals);
    EXPECT_EQ(item.Render(0), "1572864");
}

TEST(TableIntItem, TakesANewValue) {
    CTableIntItem item(1, 5, NumberStyle::Plain);
    item.SetValue(-6);
    EXPECT_EQ(item.GetValue(), -6);
    EXPECT_EQ(item.Render(0), "-6");
}

TEST(TableIntItem, ComparesSignedNumbers) {
    EXPECT_EQ(Plain(2).Compare(Plain(10)), -1);
    EXPECT_EQ(Plain(10).Compare(Plain(2)), 1);
    EXPECT_EQ(Plain(7).Compare(Plain(7)), 0);
    EXPECT_EQ(Plain(-1).Compare(Plain(0)), -1);
    EXPECT_EQ(Plain(std::numeric_limits<int64_t>::min()).Compare(Plain(std::numeric_limits<int64_t>::max())),
              -1);
}

TEST(TableIntItem, ComparesCapacitiesByValueAndNotByText) {
    const CTableIntItem gigaByte(11, 4'700'000'000, NumberStyle::WithUnit);
    const CTableIntItem megaByte(11, 681'574'400, NumberStyle::WithUnit);
    EXPECT_EQ(gigaByte.Compare(megaByte), 1);
}

TEST(TableIntItem, ComparesWithATextAsWithZero) {
    const CTableStringItem text(1, "99");
    EXPECT_EQ(Plain(1).Compare(text), 1);
    EXPECT_EQ(Plain(0).Compare(text), 0);
    EXPECT_EQ(Plain(-1).Compare(text), -1);
}

}  // namespace
