#include <gtest/gtest.h>

#include "krvcmd/console/query/query_table.h"
#include "tests/support/captured_output.h"

namespace {

using namespace Ostrel::UI::Console;
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

TEST(SortLetters, AreDescendingBehindAMinus) {
    EXPECT_EQ(IdsSortedBy("-lms"), Lines({"1", "4", "3", "2", "5"}));
}

TEST(SortLetters, AreDescendingFromTheMinusOn) {
    EXPECT_EQ(IdsSortedBy("l-ms"), Lines({"2", "5", "1", "4", "3"}));
}

TEST(SortLetters, AreAscendingAgainBehindAPlus) {
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

}  // namespace
