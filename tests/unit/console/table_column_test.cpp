#include "krvcmd/console/table/table.h"

#include <gtest/gtest.h>

namespace {

using namespace Ostrel::UI::Console;

CTableColumn Titled(std::string_view title) {
    CTableColumn column;
    column.SetTitle(title);
    return column;
}

TEST(TableColumn, ShowsNoCellsOfAnyKindAfterConstruction) {
    EXPECT_EQ(CTableColumn().GetColumnId(), 0U);
}

TEST(TableColumn, HasNoWidthsAfterConstruction) {
    const CTableColumn column;
    EXPECT_EQ(column.GetMinWidth(), -1);
    EXPECT_EQ(column.GetMaxWidth(), -1);
    EXPECT_EQ(column.GetWidth(), 0U);
    EXPECT_EQ(column.GetTitle(), "");
}

TEST(TableColumn, TakesItsWidthFromItsTitle) {
    CTableColumn column;
    column.SetMinWidth(10);
    column.SetMaxWidth(40);
    column.SetTitle("Label");
    EXPECT_EQ(column.GetWidth(), 5U);
    EXPECT_EQ(column.GetMinWidth(), -1);
    EXPECT_EQ(column.GetMaxWidth(), 40);
}

TEST(TableColumn, FallsBackToItsTitleOnlyWithoutAWidth) {
    CTableColumn column = Titled("Label");
    EXPECT_EQ(column.GetWidthOrTitle(), 5U);
    column.SetWidth(3);
    EXPECT_EQ(column.GetWidthOrTitle(), 3U);
    column.SetWidth(0);
    EXPECT_EQ(column.GetWidthOrTitle(), 5U);
    EXPECT_EQ(column.GetWidth(), 0U);
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

}  // namespace
