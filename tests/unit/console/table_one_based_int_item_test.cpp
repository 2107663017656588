#include "krvcmd/console/table/table_item.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Ostrel::UI::Console;

TEST(TableOneBasedIntItem, ShowsAndHoldsTheNumberThatUsersKnow) {
    const CTableOneBasedIntItem first(6, 0);
    EXPECT_EQ(first.Render(0), "1");
    EXPECT_EQ(first.GetValue(), 1);
    EXPECT_EQ(CTableOneBasedIntItem(6, -1).Render(0), "0");
    EXPECT_EQ(CTableOneBasedIntItem(6, std::numeric_limits<int32_t>::max()).Render(0), "2147483648");
}

TEST(TableOneBasedIntItem, TakesANewValueAsItIs) {
    CTableOneBasedIntItem item(6, 0);
    item.SetValue(12);
    EXPECT_EQ(item.Render(0), "12");
}

TEST(TableOneBasedIntItem, IsRenderedAndComparedAsANumber) {
    EXPECT_EQ(CTableOneBasedIntItem(6, 11).Render(4), "  12");
    EXPECT_EQ(CTableOneBasedIntItem(6, 999).Render(3), "...");
    EXPECT_EQ(CTableOneBasedIntItem(6, 8).Compare(CTableOneBasedIntItem(6, 9)), -1);
    EXPECT_EQ(CTableOneBasedIntItem(6, 9).Compare(CTableIntItem(6, 10, NumberStyle::Plain)), 0);
}

}  // namespace
