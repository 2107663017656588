#include "krvcmd/console/query/query_table.h"

#include <gtest/gtest.h>

#include <new>
#include <set>

#include "krvcmd/console/query/column_catalogue.h"
#include "tests/support/captured_output.h"
#include "tests/unit/console/support/failing_allocation.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::FailingAllocation;
using krvcmd::test::Lines;
using krvcmd::test::OutputOf;

std::string Titles(const CTable& table) {
    std::string titles;
    for (const CTableColumn& column : table.GetColumns())
        titles.append(column.GetTitle()).append(1, '|');
    return titles;
}

TEST(ColumnLetters, ChooseTheColumnsFromLeftToRight) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("ILl"));
    EXPECT_EQ(Titles(table), "Vol ID|Location|Label|");
    EXPECT_EQ(table.GetContentWidth(), 6U + 8U + 5U);
}

TEST(ColumnLetters, MayBeRepeated) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("IIl"));
    EXPECT_EQ(Titles(table), "Vol ID|Vol ID|Label|");
}

TEST(ColumnLetters, AreCaseSensitive) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("Ss"));
    EXPECT_EQ(Titles(table), "Slots|Slot|");
}

TEST(ColumnLetters, AreRefusedWhenUnknownButTheKnownOnesAreSet) {
    for (const char* letters : {"IQ", "QI", "I+", "-I", "I ", "IQQ"}) {
        CKrvQueryTable table;
        EXPECT_FALSE(table.SetColumnLetters(letters)) << letters;
        EXPECT_EQ(Titles(table), "Vol ID|") << letters;
    }
}

TEST(ColumnLetters, MayBeNone) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters(""));
    EXPECT_EQ(table.GetColumnCount(), 0U);
}

TEST(ColumnLetters, ReplaceTheColumnsChosenBefore) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("IL"));
    EXPECT_TRUE(table.SetColumnLetters("o"));
    EXPECT_EQ(Titles(table), "Status|");
}

// ---- Sort letters: four volumes, shown by their IDs in the resulting order --------------

krvcmd::JukeboxInfo TowerOfTwoMagazines() {
    krvcmd::JukeboxInfo jukebox;
    jukebox.key.jukeboxId = 11;
    jukebox.record.magazineCount = 2;
    return jukebox;
}

void AddVolume(CKrvQueryTable& table, int32_t volumeId, const char* label, int32_t magazine, int32_t slot) {
    krvcmd::VolumeInfo volume;
    volume.volumeId = volumeId;
    std::string_view(label).copy(volume.record.label, sizeof volume.record.label);
    table.AddSideRow(TowerOfTwoMagazines(), {sizeof(SideKey), 11, magazine, slot, 0}, {}, volume);
}

// The volume IDs, one in a line, that a table sorted by these letters shows.
std::string IdsSortedBy(std::string_view sortLetters) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("I"));
    EXPECT_TRUE(table.SetSortLetters(sortLetters));
    table.SetFormatted(false);
    AddVolume(table, 1, "Box-10", 1, 5);
    AddVolume(table, 2, "Box-9", 1, 5);
    AddVolume(table, 3, "Box-10", 0, 7);
    AddVolume(table, 4, "Box-10", 1, 4);
    AddVolume(table, 5, "Box-9", 1, 5);
    return OutputOf([&] { table.Print(); });
}

TEST(SortLetters, OrderByTheFirstLetterThenByTheNext) {
    // Label, then magazine, then slot; volumes 2 and 5 are equal and keep their order.
    EXPECT_EQ(IdsSortedBy("lms"), Lines({"2", "5", "3", "4", "1"}));
}

TEST(SortLetters, AreDescendingAfterAMinus) {
    EXPECT_EQ(IdsSortedBy("-lms"), Lines({"1", "4", "3", "2", "5"}));
}

TEST(SortLetters, AreDescendingFromTheMinusOn) {
    EXPECT_EQ(IdsSortedBy("l-ms"), Lines({"2", "5", "1", "4", "3"}));
}

TEST(SortLetters, AreAscendingAgainAfterAPlus) {
    EXPECT_EQ(IdsSortedBy("-l+ms"), Lines({"3", "4", "1", "2", "5"}));
    EXPECT_EQ(IdsSortedBy("+l+ms"), IdsSortedBy("lms"));
    EXPECT_EQ(IdsSortedBy("--l"), IdsSortedBy("-l"));
    EXPECT_EQ(IdsSortedBy("-+l"), IdsSortedBy("l"));
}

TEST(SortLetters, KeepTheOrderOfArrivalWhenThereAreNone) {
    EXPECT_EQ(IdsSortedBy(""), Lines({"1", "2", "3", "4", "5"}));
    EXPECT_EQ(IdsSortedBy("-"), Lines({"1", "2", "3", "4", "5"}));
}

TEST(SortLetters, NeedNotBeAmongTheColumns) {
    EXPECT_EQ(IdsSortedBy("s"), Lines({"4", "1", "2", "5", "3"}));
}

TEST(SortLetters, KeepTheOrderOfArrivalWhenNoRowHasTheCell) {
    EXPECT_EQ(IdsSortedBy("-JN"), Lines({"1", "2", "3", "4", "5"}));
}

TEST(SortLetters, AreRefusedWhenUnknownButTheKnownOnesAreSet) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("I"));
    EXPECT_FALSE(table.SetSortLetters("Q-I"));
    table.SetFormatted(false);
    AddVolume(table, 1, "a", 0, 0);
    AddVolume(table, 2, "a", 0, 0);
    EXPECT_EQ(OutputOf([&] { table.Print(); }), "2\n1\n");
}

// ---- Memory that runs out --------------------------------------------------------------

using namespace Ostrel::UI::Console;
krvcmd::VolumeInfo LongNamedVolume() {
    krvcmd::VolumeInfo volume;
    volume.volumeId = 33;
    std::string_view("a label that does not fit into a cell").copy(volume.record.label, 255);
    std::string_view("a file system of that kind").copy(volume.record.fileSystem, 29);
    volume.aspects = {R"(\a\directory\with\a\long\name)"};
    return volume;
}

krvcmd::JukeboxInfo LongNamedJukebox() {
    krvcmd::JukeboxInfo jukebox;
    std::string_view("a jukebox with a long name").copy(jukebox.record.name, 51);
    jukebox.record.magazineCount = 2;
    return jukebox;
}

std::set<uint32_t> ColumnIdsOf(const CTableRow& row) {
    std::set<uint32_t> ids;
    for (const CTableItem* item : row.GetItems())
        ids.insert(item->GetColumnId());
    return ids;
}

// Every column, also those that no letter selects.
std::vector<CTableColumn> AllColumns() {
    std::vector<CTableColumn> columns;
    for (const ColumnInfo& info : GetColumnCatalogue())
        columns.push_back(MakeColumn(info.letter));
    for (const uint32_t columnId : {column_id::kFinalization, column_id::kRecordedState}) {
        columns.emplace_back();
        columns.back().SetColumnId(columnId);
    }
    return columns;
}

TEST(QueryTableMemory, LeavesOutACellForWhichThereIsNone) {
    CKrvQueryTable complete;
    complete.SetColumns(AllColumns());
    complete.AddSideRow(LongNamedJukebox(), {}, {}, LongNamedVolume());
    const std::set<uint32_t> allIds = ColumnIdsOf(*complete.GetRowsInOrder().front());
    ASSERT_EQ(allIds.size(), 18U);

    std::set<uint32_t> missing;
    bool reachedTheEnd = false;
    for (size_t number = 1; !reachedTheEnd; ++number) {
        const krvcmd::JukeboxInfo jukebox = LongNamedJukebox();
        const krvcmd::VolumeInfo volume = LongNamedVolume();
        CKrvQueryTable table;
        table.SetColumns(AllColumns());
        {
            const FailingAllocation failure(number);
            try {
                table.AddSideRow(jukebox, {}, {}, volume);
            } catch (const std::bad_alloc&) {
                // No memory for the row itself.
                EXPECT_TRUE(table.GetRowsInOrder().empty());
                continue;
            }
            reachedTheEnd = !failure.HasFailed();
        }
        const std::vector<const CTableRow*> rows = table.GetRowsInOrder();
        ASSERT_EQ(rows.size(), 1U);
        const std::set<uint32_t> ids = ColumnIdsOf(*rows.front());
        EXPECT_GE(ids.size(), allIds.size() - 1) << "allocation " << number;
        for (const uint32_t id : allIds) {
            if (!ids.contains(id)) missing.insert(id);
        }
    }
    // Location, label, file system and directory need memory of their own in every table.
    for (const uint32_t id : {9U, 15U, 10U, 14U})
        EXPECT_TRUE(missing.contains(id)) << id;
}

}  // namespace
