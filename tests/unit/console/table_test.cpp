#include "krvcmd/console/table/table.h"

#include <gtest/gtest.h>

#include <array>
#include <memory_resource>

namespace {

using namespace Ostrel::UI::Console;

CTableColumn Titled(std::string_view title) {
    CTableColumn column;
    column.SetTitle(title);
    return column;
}

TEST(TableColumn, HasNoIdAfterConstruction) {
    EXPECT_EQ(CTableColumn().GetColumnId(), 0U);
}

TEST(TableColumn, HasNoWidthsAfterConstruction) {
    const CTableColumn column;
    EXPECT_EQ(column.GetMinWidth(), -1);
    EXPECT_EQ(column.GetMaxWidth(), -1);
    EXPECT_EQ(column.GetWidth(/*useTitle=*/false), 0U);
    EXPECT_EQ(column.GetTitle(), "");
}

TEST(TableColumn, TakesItsWidthFromItsTitle) {
    CTableColumn column;
    column.SetMinWidth(10);
    column.SetMaxWidth(40);
    column.SetTitle("Label");
    EXPECT_EQ(column.GetWidth(/*useTitle=*/false), 5U);
    EXPECT_EQ(column.GetMinWidth(), -1);
    EXPECT_EQ(column.GetMaxWidth(), 40);
}

TEST(TableColumn, HasTheLengthOfItsTitleOnRequestWithoutAWidth) {
    CTableColumn column = Titled("Label");
    EXPECT_EQ(column.GetWidth(/*useTitle=*/true), 5U);
    column.SetWidth(3);
    EXPECT_EQ(column.GetWidth(/*useTitle=*/true), 3U);
    column.SetWidth(0);
    EXPECT_EQ(column.GetWidth(/*useTitle=*/true), 5U);
    EXPECT_EQ(column.GetWidth(/*useTitle=*/false), 0U);
}

TEST(TableColumn, CentresItsTitle) {
    EXPECT_EQ(Titled("Label").RenderTitle(5), "Label");
    EXPECT_EQ(Titled("Label").RenderTitle(6), "Label ");
    EXPECT_EQ(Titled("Label").RenderTitle(7), " Label ");
    EXPECT_EQ(Titled("Label").RenderTitle(8), " Label  ");
}

TEST(TableColumn, CutsALongTitleAtItsEnd) {
    EXPECT_EQ(Titled("Label").RenderTitle(4), "Labe");
    EXPECT_EQ(Titled("Label").RenderTitle(1), "L");
}

TEST(TableColumn, ShowsItsTitleAsItIsInWidthZero) {
    EXPECT_EQ(Titled("Label").RenderTitle(0), "Label");
}

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
    const std::array<const CTableItem*, 3> cells{&other, &first, &second};
    const CTableRow row(cells, &memory);
    EXPECT_EQ(row.FindItem(3), &first);
    EXPECT_EQ(row.FindItem(1), &other);
    EXPECT_EQ(row.FindItem(2), nullptr);
    EXPECT_EQ(CTableRow().FindItem(1), nullptr);
}

CTableColumn Column(uint32_t columnId, std::string_view title) {
    CTableColumn column;
    column.SetColumnId(columnId);
    column.SetTitle(title);
    return column;
}

CTableRow RowOf(std::initializer_list<const CTableItem*> items) {
    CTableRow row;
    for (const CTableItem* item : items)
        row.AddItem(*item);
    return row;
}

TEST(Table, IsEmptyAfterConstruction) {
    const CTable table;
    EXPECT_EQ(table.GetColumnCount(), 0U);
    EXPECT_EQ(table.GetSeparator(), "");
    EXPECT_EQ(table.GetContentWidth(), 0U);
    EXPECT_TRUE(table.GetColumnUsage().empty());
    EXPECT_TRUE(table.GetRowsInOrder().empty());
}

TEST(Table, NotesTheLengthOfAllTitlesWithNewColumns) {
    CTable table;
    table.SetColumns({Column(1, "Name"), Column(2, "Status")});
    EXPECT_EQ(table.GetColumnCount(), 2U);
    EXPECT_EQ(table.GetContentWidth(), 10U);
    table.SetColumns({Column(1, "Name")});
    EXPECT_EQ(table.GetColumnCount(), 1U);
    EXPECT_EQ(table.GetContentWidth(), 4U);
}

TEST(Table, IgnoresRowsWhileItHasNoColumns) {
    CTable table;
    const CTableStringItem cell(1, "a");
    table.AddRow(RowOf({&cell}));
    EXPECT_TRUE(table.GetRowsInOrder().empty());
    EXPECT_TRUE(table.GetColumnUsage().empty());
}

TEST(Table, IgnoresRowsWithoutCells) {
    CTable table;
    table.SetColumns({Column(1, "Name")});
    table.AddRow(CTableRow());
    EXPECT_TRUE(table.GetRowsInOrder().empty());
    EXPECT_EQ(table.GetContentWidth(), 4U);
}

TEST(Table, CountsCellsAndTheLongestTextOfEachColumn) {
    CTable table;
    table.SetColumns({Column(1, "Name")});
    const CTableStringItem shortName(1, "ab");
    const CTableStringItem longName(1, "abcdef");
    const CTableStringItem middleName(1, "abcd");
    const CTableIntItem hidden(9, 12345, /*withUnit=*/false);

    table.AddRow(RowOf({&shortName}));
    table.AddRow(RowOf({&hidden, &longName}));
    table.AddRow(RowOf({&middleName, &hidden}));

    const std::vector<ColumnUsage>& usage = table.GetColumnUsage();
    ASSERT_EQ(usage.size(), 2U);
    EXPECT_EQ(usage[0].columnId, 1U);
    EXPECT_EQ(usage[0].maxTextLength, 6);
    EXPECT_EQ(usage[0].count, 3U);
    // A column that is not shown is counted as well.
    EXPECT_EQ(usage[1].columnId, 9U);
    EXPECT_EQ(usage[1].maxTextLength, 5);
    EXPECT_EQ(usage[1].count, 2U);
    EXPECT_EQ(table.GetContentWidth(), 0U);
}

TEST(Table, CountsTwoCellsOfOneColumnInOneRow) {
    CTable table;
    table.SetColumns({Column(1, "Name")});
    const CTableStringItem first(1, "ab");
    const CTableStringItem second(1, "abc");
    table.AddRow(RowOf({&first, &second}));
    ASSERT_EQ(table.GetColumnUsage().size(), 1U);
    EXPECT_EQ(table.GetColumnUsage()[0].count, 2U);
    EXPECT_EQ(table.GetColumnUsage()[0].maxTextLength, 3);
}

TEST(Table, KnowsWhichColumnsAreEmpty) {
    CTable table;
    table.SetColumns({Column(1, "Name"), Column(2, "Status"), Column(1, "Again")});
    const CTableStringItem cell(1, "");
    table.AddRow(RowOf({&cell}));
    EXPECT_FALSE(table.IsColumnEmpty(0));  // a cell with an empty text is a cell
    EXPECT_TRUE(table.IsColumnEmpty(1));
    EXPECT_FALSE(table.IsColumnEmpty(2));
    EXPECT_TRUE(table.IsColumnEmpty(3));  // beyond the last column
}

}  // namespace
