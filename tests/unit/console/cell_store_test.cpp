#include "krvcmd/console/table/cell_store.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

#include "tests/unit/console/support/failing_allocation.h"
#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Rendered;

class CellStoreTest : public testing::Test {
  protected:
    static constexpr std::string_view kActive = "active";
    static constexpr std::string_view kDisabled = "disabled";

    std::pmr::monotonic_buffer_resource m_memory;
    CellStore m_cells{&m_memory};
};

TEST_F(CellStoreTest, MakesCellsOfEachKind) {
    EXPECT_EQ(Rendered(m_cells.Number(2, 33), 5), "   33");
    EXPECT_EQ(m_cells.Capacity(13, 681'574'400).GetText(), "650 MByte");
    EXPECT_EQ(m_cells.OneBasedNumber(7, 11).GetText(), "12");
    EXPECT_EQ(m_cells.Percent(12, 25, 100).GetText(), "75%%");
    EXPECT_EQ(Rendered(m_cells.Text(15, "label"), 7), "label  ");
    // Two backslashes in front: only a directory keeps its beginning.
    EXPECT_EQ(Rendered(m_cells.Directory(14, R"(\\server)"), 6), "...erv");
    EXPECT_EQ(m_cells.Word(3, "active").GetText(), "active");
    EXPECT_EQ(m_cells.Text(15, "label").GetColumnId(), 15U);
}

TEST_F(CellStoreTest, SharesTheWordsOfAColumn) {
    const CTableItem& active = m_cells.Word(3, kActive);
    const CTableItem& disabled = m_cells.Word(3, kDisabled);
    EXPECT_EQ(&m_cells.Word(3, kActive), &active);
    EXPECT_EQ(&m_cells.Word(3, kDisabled), &disabled);
    EXPECT_EQ(disabled.GetText(), "disabled");
    EXPECT_NE(&m_cells.Word(4, kActive), &active);
    EXPECT_EQ(m_cells.Word(4, kActive).GetColumnId(), 4U);
}

TEST_F(CellStoreTest, SharesTheNumbersBelowAThousandOfAColumn) {
    for (const int32_t number : {0, 11, 999}) {
        const CTableItem& cell = m_cells.OneBasedNumber(7, number);
        EXPECT_EQ(&m_cells.OneBasedNumber(7, number), &cell) << number;
        EXPECT_EQ(cell.GetValue(), number + 1);
        EXPECT_NE(&m_cells.OneBasedNumber(6, number), &cell) << number;
    }
    for (const int32_t number : {-1, 1000, 2147483647}) {
        const CTableItem& cell = m_cells.OneBasedNumber(7, number);
        EXPECT_NE(&m_cells.OneBasedNumber(7, number), &cell) << number;
        EXPECT_EQ(cell.GetValue(), int64_t{number} + 1);
    }
}

TEST_F(CellStoreTest, SharesEqualPercentages) {
    EXPECT_EQ(&m_cells.Percent(12, 25, 100), &m_cells.Percent(12, 50, 200));
    EXPECT_EQ(m_cells.Percent(12, 150, 100).GetText(), "-50%%");
    EXPECT_EQ(m_cells.Percent(12, -2000, 100).GetText(), "2100%%");
}

TEST_F(CellStoreTest, SharesOtherNumbersAndTextsWhileAColumnRepeatsThem) {
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

TEST_F(CellStoreTest, SharesCapacitiesAndNamesWithTheLastEightOfAColumn) {
    const CTableItem& capacity = m_cells.Capacity(13, 0);
    const CTableItem& name = m_cells.Name(10, "0");
    for (int64_t other = 1; other <= 7; ++other) {
        EXPECT_EQ(m_cells.Capacity(13, other).GetValue(), other);
        EXPECT_EQ(m_cells.Name(10, std::to_string(other)).GetText(), std::to_string(other));
    }
    EXPECT_EQ(&m_cells.Capacity(13, 0), &capacity);
    EXPECT_NE(&m_cells.Capacity(24, 0), &capacity);
    EXPECT_EQ(&m_cells.Name(10, "0"), &name);
    (void)m_cells.Capacity(13, 8);
    (void)m_cells.Name(10, "8");
    EXPECT_NE(&m_cells.Capacity(13, 0), &capacity);
    EXPECT_EQ(m_cells.Capacity(13, 0).GetValue(), 0);
    EXPECT_NE(&m_cells.Name(10, "0"), &name);
    EXPECT_EQ(m_cells.Name(10, "0").GetText(), "0");
}

TEST_F(CellStoreTest, CopiesTheTextsOfItsCells) {
    std::string text = "a text that is longer than a cell itself";
    const CTableItem& cell = m_cells.Text(15, text);
    text.assign(text.size(), '?');
    EXPECT_EQ(cell.GetText(), "a text that is longer than a cell itself");
}

// Has no memory the first time that it is asked.
class LateMemory : public std::pmr::memory_resource {
  private:
    void* do_allocate(size_t bytes, size_t alignment) override {
        if (!std::exchange(m_hasFailed, true)) throw std::bad_alloc();
        return m_memory.allocate(bytes, alignment);
    }
    void do_deallocate(void*, size_t, size_t) override {}
    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
        return this == &other;
    }

    bool m_hasFailed = false;
    std::pmr::monotonic_buffer_resource m_memory;
};

TEST_F(CellStoreTest, MakesASharedCellLaterWhenThereWasNoMemoryForIt) {
    LateMemory memory;
    CellStore cells(&memory);
    EXPECT_THROW(static_cast<void>(cells.OneBasedNumber(7, 11)), std::bad_alloc);
    const CTableItem& cell = cells.OneBasedNumber(7, 11);
    EXPECT_EQ(cell.GetText(), "12");
    EXPECT_EQ(&cells.OneBasedNumber(7, 11), &cell);
}

TEST_F(CellStoreTest, MakesACellOfItsOwnWhenThereIsNoMemoryForSharingIt) {
    for (const size_t refused : {1U, 2U}) {
        CellStore cells(&m_memory);
        const krvcmd::test::FailingAllocation failure(refused);
        EXPECT_EQ(cells.OneBasedNumber(7, 11).GetText(), "12") << refused;
        EXPECT_TRUE(failure.HasFailed()) << refused;
        EXPECT_EQ(cells.OneBasedNumber(7, 12).GetText(), "13") << refused;
    }
    CellStore cells(&m_memory);
    const krvcmd::test::FailingAllocation failure(1);
    const CTableItem& first = cells.Number(3, 5);
    EXPECT_TRUE(failure.HasFailed());
    EXPECT_NE(&cells.Number(3, 5), &first);
}

}  // namespace
