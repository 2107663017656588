#include "krvcmd/console/cell_store.h"

#include <gtest/gtest.h>

#include <new>

#include "tests/unit/console/support/failing_allocation.h"

namespace {

using namespace Ostrel::UI::Console;

class CellStoreTest : public testing::Test {
  protected:
    std::pmr::monotonic_buffer_resource m_memory;
    CellStore m_cells{&m_memory};
};

TEST_F(CellStoreTest, MakesCellsOfEachKind) {
    EXPECT_EQ(m_cells.Number(2, 33).Render(5), "   33");
    EXPECT_EQ(m_cells.Capacity(13, 681'574'400).Render(0), "650 MByte");
    EXPECT_EQ(m_cells.OneBasedNumber(7, 11).Render(0), "12");
    EXPECT_EQ(m_cells.Percent(12, 25, 100).Render(0), "75%%");
    EXPECT_EQ(m_cells.Text(15, "label").Render(7), "label  ");
    // Two backslashes in front: only a directory keeps its beginning.
    EXPECT_EQ(m_cells.Directory(14, R"(\\server)").Render(6), "...erv");
    EXPECT_EQ(m_cells.Word(3, "active").Render(0), "active");
    EXPECT_EQ(m_cells.Text(15, "label").GetColumnId(), 15U);
}

TEST_F(CellStoreTest, SharesWordsSmallNumbersAndPerCents) {
    static constexpr std::string_view kActive = "active";
    EXPECT_EQ(&m_cells.Word(3, kActive), &m_cells.Word(3, kActive));
    EXPECT_NE(&m_cells.Word(3, kActive), &m_cells.Word(4, kActive));
    EXPECT_EQ(m_cells.Word(4, kActive).GetColumnId(), 4U);
    EXPECT_EQ(&m_cells.OneBasedNumber(7, 11), &m_cells.OneBasedNumber(7, 11));
    EXPECT_NE(&m_cells.OneBasedNumber(7, 11), &m_cells.OneBasedNumber(7, 12));
    EXPECT_EQ(&m_cells.Percent(12, 25, 100), &m_cells.Percent(12, 50, 200));
}

TEST_F(CellStoreTest, MakesACellOfItsOwnForOtherNumbersAndTexts) {
    EXPECT_NE(&m_cells.Number(2, 33), &m_cells.Number(2, 34));
    EXPECT_NE(&m_cells.Text(15, "label"), &m_cells.Text(15, "Label"));
    EXPECT_EQ(m_cells.OneBasedNumber(7, -1).Render(0), "0");
    EXPECT_EQ(m_cells.OneBasedNumber(7, 2147483647).Render(0), "2147483648");
    EXPECT_EQ(m_cells.Percent(12, 150, 100).Render(0), "-50%%");
    EXPECT_EQ(m_cells.Percent(12, -2000, 100).Render(0), "2100%%");
}

TEST_F(CellStoreTest, SharesNumbersAndTextsThatFollowOneAnotherInAColumn) {
    const CTableItem& number = m_cells.Number(2, 33);
    EXPECT_EQ(&m_cells.Number(2, 33), &number);
    EXPECT_NE(&m_cells.Number(25, 33), &number);
    EXPECT_EQ(&m_cells.Number(2, 33), &number);
    EXPECT_EQ(m_cells.Number(2, 34).GetValue(), 34);
    EXPECT_EQ(m_cells.Number(2, 33).GetValue(), 33);

    const CTableItem& capacity = m_cells.Capacity(13, 681'574'400);
    EXPECT_EQ(&m_cells.Capacity(13, 681'574'400), &capacity);
    EXPECT_EQ(m_cells.Capacity(13, 681'574'401).GetValue(), 681'574'401);

    const CTableItem& text = m_cells.Text(10, "UDF");
    EXPECT_EQ(&m_cells.Text(10, "UDF"), &text);
    EXPECT_EQ(m_cells.Text(10, "UDF 2").GetText(), "UDF 2");
    EXPECT_EQ(m_cells.Text(10, "UDF").GetText(), "UDF");
}

TEST_F(CellStoreTest, CopiesTheTextsOfItsCells) {
    std::string text = "a text that is longer than a cell itself";
    const CTableItem& cell = m_cells.Text(15, text);
    text.assign(text.size(), '?');
    EXPECT_EQ(cell.Render(0), "a text that is longer than a cell itself");
}

TEST_F(CellStoreTest, MakesASharedCellLaterWhenThereWasNoMemoryForIt) {
    bool hasFailed = false;
    {
        const krvcmd::test::FailingAllocation failure(1);
        try {
            static_cast<void>(m_cells.OneBasedNumber(7, 11));
        } catch (const std::bad_alloc&) {
            hasFailed = true;
        }
    }
    EXPECT_TRUE(hasFailed);
    EXPECT_EQ(m_cells.OneBasedNumber(7, 11).Render(0), "12");
}

}  // namespace
