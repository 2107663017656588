#include "krvcmd/console/table/cell_store.h"

#include <gtest/gtest.h>

#include "krvcmd/console/table/table_item.h"

namespace {

using namespace Ostrel::UI::Console;

TEST(SharedCells, HaveAPlaceForEverySmallNumberOfAColumn) {
    EXPECT_FALSE(SharedCells::IsShared(-1));
    EXPECT_TRUE(SharedCells::IsShared(0));
    EXPECT_TRUE(SharedCells::IsShared(999));
    EXPECT_FALSE(SharedCells::IsShared(1000));

    const CTableStringItem cell(6, "x");
    SharedCells cells;
    EXPECT_EQ(cells.OfNumber(6, 999), nullptr);
    cells.OfNumber(6, 0) = &cell;
    EXPECT_EQ(cells.OfNumber(6, 0), &cell);
    EXPECT_EQ(cells.OfNumber(6, 1), nullptr);
    EXPECT_EQ(cells.OfNumber(7, 0), nullptr);
}

TEST(SharedCells, HaveAPlaceForEveryWordOfAColumn) {
    static constexpr std::string_view kActive = "active";
    static constexpr std::string_view kDisabled = "disabled";
    const CTableStringItem active(3, kActive);
    const CTableStringItem disabled(3, kDisabled);
    SharedCells cells;
    cells.OfWord(3, kActive) = &active;
    EXPECT_EQ(cells.OfWord(3, kDisabled), nullptr);
    cells.OfWord(3, kDisabled) = &disabled;
    EXPECT_EQ(cells.OfWord(3, kActive), &active);
    EXPECT_EQ(cells.OfWord(3, kDisabled), &disabled);
    EXPECT_EQ(cells.OfWord(4, kActive), nullptr);
}

}  // namespace
