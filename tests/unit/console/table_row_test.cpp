#include "krvcmd/console/table/table.h"

#include <gtest/gtest.h>

#include <memory_resource>

#include "krvcmd/console/table/table_item.h"

namespace {

using namespace Ostrel::UI::Console;

TEST(TableRow, KeepsItsCellsInTheOrderInWhichTheyWereAdded) {
    const CTableStringItem first(7, "first");
    const CTableStringItem second(3, "second");
    CTableRow row;
    row.AddItem(first);
    row.AddItem(second);
    ASSERT_EQ(row.GetItems().size(), 2U);
    EXPECT_EQ(row.GetItems()[0], &first);
    EXPECT_EQ(row.GetItems()[1], &second);
}

TEST(TableRow, FindsTheFirstCellOfAColumn) {
    const CTableStringItem other(1, "other");
    const CTableStringItem first(3, "first");
    const CTableStringItem second(3, "second");
    std::pmr::monotonic_buffer_resource memory;
    CTableRow row(3, &memory);
    row.AddItem(other);
    row.AddItem(first);
    row.AddItem(second);
    EXPECT_EQ(row.FindItem(3), &first);
    EXPECT_EQ(row.FindItem(1), &other);
    EXPECT_EQ(row.FindItem(2), nullptr);
    EXPECT_EQ(CTableRow().FindItem(1), nullptr);
}

}  // namespace
