#include "krvcmd/console/table/row_order.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <random>
#include <string>

#include "krvcmd/console/table/table_item.h"
#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::CellsOf;
using krvcmd::test::Number;
using krvcmd::test::Text;
using krvcmd::test::TextTable;

constexpr uint32_t kName = 1;
constexpr uint32_t kCount = 2;
constexpr uint32_t kLabel = 3;  // no column of the table

class RowOrder : public testing::Test {
  protected:
    // The names of the rows as they stand.
    std::string Names() const {
        std::string names;
        for (const CTableRow* row : m_table.GetRowsInOrder()) {
            if (!names.empty()) names += ' ';
            names += row->FindItem(kName)->GetText();
        }
        return names;
    }

    TextTable m_table{80, {{kName, "Name"}, {kCount, "Count"}}};
};

TEST_F(RowOrder, IsThatOfArrivalUntilKeysAreSet) {
    for (const char* name : {"c", "a", "b"})
        m_table.AddTexts({{kName, name}});
    EXPECT_EQ(Names(), "c a b");
}

TEST_F(RowOrder, IsThatOfArrivalWithoutKeys) {
    m_table.SetSortKeys({});
    for (const char* name : {"c", "a", "b"})
        m_table.AddTexts({{kName, name}});
    EXPECT_EQ(Names(), "c a b");
}

// Equal in their first eight bytes and beyond.
TEST_F(RowOrder, LooksBeyondALongCommonBeginning) {
    m_table.SetSortKeys({{kName, kAscending}});
    for (const char* name :
         {"Archive-of-sales-b", "Archive-of-sales-a", "Archive-of-sales", "Archive-of-sales-c"})
        m_table.AddTexts({{kName, name}});
    EXPECT_EQ(Names(), "Archive-of-sales Archive-of-sales-a Archive-of-sales-b Archive-of-sales-c");
}

// Equal in their first eight bytes, which are all of one of them.
TEST_F(RowOrder, PutsATextBeforeALongerOneThatBeginsWithIt) {
    m_table.SetSortKeys({{kName, kAscending}});
    for (const char* name : {"archive-b", "archive-", "archive-a"})
        m_table.AddTexts({{kName, name}});
    EXPECT_EQ(Names(), "archive- archive-a archive-b");
}

TEST_F(RowOrder, HoldsAfterEveryRow) {
    m_table.SetSortKeys({{kName, kAscending}});
    m_table.AddTexts({{kName, "b"}});
    EXPECT_EQ(Names(), "b");
    m_table.AddTexts({{kName, "a"}});
    EXPECT_EQ(Names(), "a b");
    m_table.AddTexts({{kName, "d"}});
    EXPECT_EQ(Names(), "a b d");
    m_table.AddTexts({{kName, "c"}});
    EXPECT_EQ(Names(), "a b c d");
}

TEST_F(RowOrder, FollowsNumbersAndTheirDirection) {
    m_table.SetSortKeys({{kCount, kDescending}});
    m_table.Add(CellsOf(Text(kName, "nine"), Number(kCount, 9)));
    m_table.Add(CellsOf(Text(kName, "ten"), Number(kCount, 10)));
    m_table.Add(CellsOf(Text(kName, "minus"), Number(kCount, -1)));
    EXPECT_EQ(Names(), "ten nine minus");
}

TEST_F(RowOrder, PutsBoxNineBeforeBoxTen) {
    m_table.SetSortKeys({{kName, kAscending}});
    for (const char* name : {"Box-10", "Box-9", "Box-1"})
        m_table.AddTexts({{kName, name}});
    EXPECT_EQ(Names(), "Box-1 Box-9 Box-10");
}

TEST_F(RowOrder, AsksTheNextKeyWhenRowsAreEqual) {
    m_table.SetSortKeys({{kLabel, kAscending}, {kCount, kDescending}});
    m_table.Add(CellsOf(Text(kName, "x1"), Text(kLabel, "x"), Number(kCount, 1)));
    m_table.Add(CellsOf(Text(kName, "y5"), Text(kLabel, "y"), Number(kCount, 5)));
    m_table.Add(CellsOf(Text(kName, "x2"), Text(kLabel, "x"), Number(kCount, 2)));
    m_table.Add(CellsOf(Text(kName, "y6"), Text(kLabel, "y"), Number(kCount, 6)));
    EXPECT_EQ(Names(), "x2 x1 y6 y5");
}

TEST_F(RowOrder, KeepsEqualRowsInTheOrderOfArrivalInBothDirections) {
    for (const int32_t direction : {kAscending, kDescending}) {
        TextTable table(80, {{kName, "Name"}});
        table.SetSortKeys({{kLabel, direction}});
        std::string names;
        for (const char* name : {"c", "a", "d", "b"})
            table.AddTexts({{kName, name}, {kLabel, "same"}});
        for (const CTableRow* row : table.GetRowsInOrder())
            names += row->FindItem(kName)->GetText();
        EXPECT_EQ(names, "cadb");
    }
}

TEST_F(RowOrder, PutsRowsWithoutTheCellFirstWhenAscending) {
    m_table.SetSortKeys({{kLabel, kAscending}});
    m_table.AddTexts({{kName, "b"}, {kLabel, "b"}});
    m_table.AddTexts({{kName, "none1"}});
    m_table.AddTexts({{kName, "empty"}, {kLabel, ""}});
    m_table.AddTexts({{kName, "none2"}});
    EXPECT_EQ(Names(), "none1 none2 empty b");
}

TEST_F(RowOrder, PutsRowsWithoutTheCellLastWhenDescending) {
    m_table.SetSortKeys({{kLabel, kDescending}});
    m_table.AddTexts({{kName, "none1"}});
    m_table.AddTexts({{kName, "a"}, {kLabel, "a"}});
    m_table.AddTexts({{kName, "none2"}});
    m_table.AddTexts({{kName, "b"}, {kLabel, "b"}});
    EXPECT_EQ(Names(), "b a none1 none2");
}

TEST_F(RowOrder, IgnoresASecondKeyOfTheSameColumn) {
    // Rows that are equal in the name are so in every later key of the name.
    std::vector<SortKey> keys{{kName, kAscending}};
    keys.insert(keys.end(), 100'000, {kName, kDescending});
    m_table.SetSortKeys(keys);
    for (const char* name : {"b", "a", "b", "c"})
        m_table.AddTexts({{kName, name}});
    EXPECT_EQ(Names(), "a b b c");
}

// ---- Against the insertion rule, taken literally --------------------------------------

int32_t CompareAsInserted(const CTableItem* a, const CTableItem* b) {
    if (a == nullptr && b == nullptr) return 0;
    if (a == nullptr) return -1;
    if (b == nullptr) return 1;
    return a->Compare(*b);
}

bool GoesInFrontOf(const CTableRow& newRow, const CTableRow& existing, const std::vector<SortKey>& keys) {
    for (const SortKey& key : keys) {
        const int32_t result =
            CompareAsInserted(newRow.FindItem(key.columnId), existing.FindItem(key.columnId));
        if (result == key.direction) return true;
        if (result != 0) return false;
    }
    return false;
}

void Insert(std::list<const CTableRow*>& rows, const CTableRow& newRow, const std::vector<SortKey>& keys) {
    auto place = rows.begin();
    while (place != rows.end() && !GoesInFrontOf(newRow, **place, keys))
        ++place;
    rows.insert(place, &newRow);
}

class RandomRows {
  public:
    explicit RandomRows(unsigned seed) : m_random(seed) {}

    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    std::vector<SortKey> Keys() {
        std::vector<SortKey> keys;
        for (unsigned count = Below(6); count > 0; --count) {
            keys.push_back({Below(6), Below(2) == 0 ? kAscending : kDescending});
        }
        return keys;
    }

    // A row with its number, so that it is never empty, and some of the cells 1 to 5.
    TextTable::Cells Cells(int64_t number) {
        static constexpr const char* kTexts[] = {"",      "a",      "Disc",   "Disc-9", "Disc-10", "Disc.9",
                                                 "Disc9", "Disc10", "9",      "10",     "disc 7%", "-5",
                                                 "Disc-", "B-1-2",  "\xe4-3", "a b"};
        TextTable::Cells cells = CellsOf(Number(kNumber, number));
        for (const uint32_t columnId : {1U, 2U}) {
            if (Below(4) != 0) cells.push_back(Text(columnId, kTexts[Below(std::size(kTexts))]));
        }
        for (const uint32_t columnId : {3U, 4U}) {
            if (Below(4) != 0) cells.push_back(Number(columnId, static_cast<int64_t>(Below(5)) - 2));
        }
        if (Below(3) != 0) {
            cells.push_back(std::make_unique<CTableIntItem>(5, Below(3) * 700'000, /*withUnit=*/true));
        }
        return cells;
    }

    static constexpr uint32_t kNumber = 99;

  private:
    std::mt19937 m_random;
};

std::vector<int64_t> NumbersOf(const auto& rows) {
    std::vector<int64_t> numbers;
    numbers.reserve(rows.size());
    for (const CTableRow* row : rows)
        numbers.push_back(row->FindItem(RandomRows::kNumber)->GetValue());
    return numbers;
}

TEST_F(RowOrder, IsThatOfInsertingEachRowBeforeTheFirstThatItPrecedes) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomRows random(seed);
        const std::vector<SortKey> keys = random.Keys();
        const int64_t rowCount = random.Below(60);
        TextTable table(80, {{RandomRows::kNumber, "Number"}});
        table.SetSortKeys(keys);

        std::list<TextTable::Cells> cells;
        std::list<CTableRow> rows;
        std::list<const CTableRow*> expected;
        for (int64_t number = 0; number < rowCount; ++number) {
            CTableRow& row = rows.emplace_back();
            for (const auto& cell : cells.emplace_back(random.Cells(number)))
                row.AddItem(*cell);
            Insert(expected, row, keys);
            table.AddRow(row);
            ASSERT_EQ(NumbersOf(table.GetRowsInOrder()), NumbersOf(expected))
                << "seed " << seed << ", row " << number;
        }
    }
}

}  // namespace
