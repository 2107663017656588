#include "krvcmd/console/table/fit_columns.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Ostrel::UI::Console::FitColumns;
using Ostrel::UI::Console::FittedColumn;

FittedColumn Fixed(int64_t width) {
    return {0, 0, width, false};
}
FittedColumn Elastic(int64_t minWidth, int64_t width) {
    return {minWidth, 0, width, false};
}
FittedColumn Limited(int64_t minWidth, int64_t maxWidth, int64_t width) {
    return {minWidth, maxWidth, width, false};
}
// An empty column; its title still gives it a width.
FittedColumn LeftOut(int64_t width) {
    return {0, 0, width, true};
}

int64_t ContentWidth(const std::vector<FittedColumn>& columns) {
    int64_t sum = 0;
    for (const FittedColumn& column : columns)
        sum += column.isLeftOut ? 0 : column.width;
    return sum;
}

// Line width and column widths after fitting, with a separator of one character.
struct Fitted {
    int64_t lineWidth;
    std::vector<int64_t> widths;
    bool operator==(const Fitted&) const = default;
};

void PrintTo(const Fitted& fitted, std::ostream* out) {
    *out << fitted.lineWidth << ":";
    for (const int64_t width : fitted.widths)
        *out << ' ' << width;
}

Fitted Fit(int64_t maxWidth, std::vector<FittedColumn> columns, int64_t separatorLength = 1) {
    Fitted result{FitColumns(maxWidth, ContentWidth(columns), separatorLength, columns), {}};
    for (const FittedColumn& column : columns)
        result.widths.push_back(column.width);
    return result;
}

// The columns of a volume query: id, location, status, type, directory, file system, per cent, total, label,
// volume type. Together 6+14+8+7+50+11+9+10+12+11 = 138; with 2 blanks for each of the 10 columns and 9
// separators 167.
std::vector<FittedColumn> VolumeColumns() {
    return {Fixed(6),        Elastic(10, 14), Fixed(8),  Fixed(7),  Limited(10, 40, 50),
            Elastic(11, 11), Fixed(9),        Fixed(10), Fixed(12), Fixed(11)};
}

TEST(FitColumns, LeavesATableThatFitsItsNaturalWidths) {
    // 168 - 29 = 139 > 138.
    const Fitted natural{167, {6, 14, 8, 7, 50, 11, 9, 10, 12, 11}};
    EXPECT_EQ(Fit(168, VolumeColumns()), natural);
    EXPECT_EQ(Fit(1000, VolumeColumns()), natural);
    EXPECT_EQ(Fit(32767, VolumeColumns()), natural);
    EXPECT_EQ(Fit(4294967295, VolumeColumns()), natural);
}

TEST(FitColumns, HasNoLimitInWidthZero) {
    EXPECT_EQ(Fit(0, VolumeColumns()).lineWidth, 167);
    EXPECT_EQ(Fit(0, {Fixed(100000), Elastic(10, 100000)}), (Fitted{200005, {100000, 100000}}));
}

// A walk over VolumeColumns, common to the cases below. A fixed column takes its width and 3 (the first one
// 2), an elastic one its minimum and 3:
//   column      takes   used before it   fixed so far (the directory counts with its maximum 40)
//   id            8           0            6   1 column
//   location     13           8
//   status       11          21           14   2
//   type         10          32           21   3
//   directory    13          42           61   4
//   file system  14          55
//   per cent     12          69           70   5   (only where 81 fits)
//   total        13          81           80   6   (only where 94 fits)
//   label        15          94           92   7   (only where 109 fits)
//   volume type  14         109          103   8   (only where 123 fits)

TEST(FitColumns, SharesWhatFixedColumnsLeaveAmongElasticOnes) {
    // All columns count. Room 167 - 29 = 138, not more than the content. 138 - 103 = 35 for 10 - 8 columns:
    // share 17, rest 1. The rest goes to the first elastic column.
    EXPECT_EQ(Fit(167, VolumeColumns()), (Fitted{167, {6, 18, 8, 7, 17, 17, 9, 10, 12, 11}}));
    // Room 121; 121 - 103 = 18: share 9, below every minimum.
    EXPECT_EQ(Fit(150, VolumeColumns()), (Fitted{150, {6, 10, 8, 7, 10, 11, 9, 10, 12, 11}}));
}

TEST(FitColumns, ChangesNothingWhenFixedColumnsLeaveNothing) {
    // All columns count, 123 fits. Room 132 - 29 = 103; 103 - 103 = 0.
    EXPECT_EQ(Fit(132, VolumeColumns()), (Fitted{132, {6, 14, 8, 7, 50, 11, 9, 10, 12, 11}}));
    // One more: 1 for 2 columns is share 0, rest 1.
    EXPECT_EQ(Fit(133, VolumeColumns()), (Fitted{133, {6, 11, 8, 7, 10, 11, 9, 10, 12, 11}}));
}

TEST(FitColumns, FitsAnOrdinaryConsole) {
    // 81 does not fit: per cent is not counted and the column after it ends the walk at n = 7 - 1 = 6.
    // 80: room 80 - 5 - 12 = 63; 63 - 61 = 2 for 6 - 4 columns: share 1, rest 0.
    EXPECT_EQ(Fit(80, VolumeColumns()), (Fitted{80, {6, 10, 8, 7, 10, 11, 9, 10, 12, 11}}));
    // 79: room 62; 1 for 2 columns: share 0, rest 1 goes to the location.
    EXPECT_EQ(Fit(79, VolumeColumns()), (Fitted{79, {6, 11, 8, 7, 10, 11, 9, 10, 12, 11}}));
    // 78: room 61; nothing to share.
    EXPECT_EQ(Fit(78, VolumeColumns()), (Fitted{78, {6, 14, 8, 7, 50, 11, 9, 10, 12, 11}}));
}

TEST(FitColumns, FitsANarrowConsole) {
    // 40: the type (32 + 10) is not counted, the directory (42) ends the walk at n = 3. Room 40 - 2 - 6 = 32;
    // 32 - 14 = 18 for 3 - 2 columns: share 18 for the location, the only elastic one of the three.
    EXPECT_EQ(Fit(40, VolumeColumns()), (Fitted{40, {6, 18, 8, 7, 50, 11, 9, 10, 12, 11}}));
    // 20: the status (21) ends the walk at n = 1. Room 20 - 2 = 18; 18 - 6 = 12; one counted column of one,
    // so the divisor is 1; that column is fixed and takes nothing.
    EXPECT_EQ(Fit(20, VolumeColumns()), (Fitted{20, {6, 14, 8, 7, 50, 11, 9, 10, 12, 11}}));
    // 1: the second column (8) ends the walk at n = 0.
    EXPECT_EQ(Fit(1, VolumeColumns()), (Fitted{1, {6, 14, 8, 7, 50, 11, 9, 10, 12, 11}}));
}

TEST(FitColumns, GivesTheFirstElasticColumnsTheRest) {
    // Walk: 6, 13 (5 used before), 18 ... with minimum 3: takes 5, 6, 6, 6; all fit. Room 41 - 3 - 8 = 30 for
    // 4 columns: share 7, rest 2.
    EXPECT_EQ(Fit(41, {Elastic(3, 10), Elastic(3, 10), Elastic(3, 10), Elastic(3, 10)}),
              (Fitted{41, {8, 8, 7, 7}}));
}

TEST(FitColumns, LeavesElasticColumnsThatFillTheLineExactly) {
    // Takes 5 and 6. Room 25 - 1 - 4 = 20 = content, and no column is fixed.
    EXPECT_EQ(Fit(25, {Elastic(3, 13), Elastic(3, 7)}), (Fitted{25, {13, 7}}));
    // One less: 19 for 2 columns.
    EXPECT_EQ(Fit(24, {Elastic(3, 13), Elastic(3, 7)}), (Fitted{24, {10, 9}}));
}

TEST(FitColumns, MakesElasticColumnsWiderThanNaturalWhenTheSharesSaySo) {
    // Takes 5 and 6. Room 24 - 1 - 4 = 19, content 20; share 9, rest 1: the second column gets 9 for its 2.
    EXPECT_EQ(Fit(24, {Elastic(3, 18), Elastic(3, 2)}), (Fitted{24, {10, 9}}));
}

TEST(FitColumns, CountsAColumnAboveItsMaximumAsFixedAndStillChangesIt) {
    // Takes: 10+2 = 12, then 5+3 = 8: 20 fits 30. Fixed: 12 for the first (its maximum), 5: 17, 2 columns
    // of 2. Room 30 - 1 - 4 = 25; 25 - 17 = 8; divisor 2: share 4, below the minimum.
    EXPECT_EQ(Fit(30, {Limited(10, 12, 30), Fixed(5)}), (Fitted{30, {10, 5}}));
    // Within its maximum it is elastic only. Fixed: 5, 1 column of 2; 25 - 5 = 20 for 1 column.
    EXPECT_EQ(Fit(30, {Limited(10, 40, 30), Fixed(5)}), (Fitted{30, {20, 5}}));
    // The maximum is no limit. Room 60 - 1 - 4 = 55 for 2 columns: share 27, rest 1.
    EXPECT_EQ(Fit(60, {Limited(10, 12, 12), Elastic(3, 60)}), (Fitted{60, {28, 27}}));
}

TEST(FitColumns, CountsAFixedColumnAboveItsMaximumTwice) {
    // The fixed column counts with its width 8 and its maximum 5: 13, as one column. Takes 10 and 4: 10
    // fits 20. Room 20 - 1 - 4 = 15; 15 - 13 = 2 for 2 - 1 columns.
    EXPECT_EQ(Fit(20, {Limited(0, 5, 8), Elastic(1, 30)}), (Fitted{20, {8, 2}}));
}

TEST(FitColumns, CountsAFixedColumnWithoutRoomByItsMaximumOnly) {
    // Takes 4+2 = 6, then 30+3 = 33: does not fit 30, so only the maximum 9 counts, as one column. Room
    // 30 - 1 - 4 = 25; 25 - 9 = 16 for 2 - 1 columns.
    EXPECT_EQ(Fit(30, {Elastic(4, 4), Limited(0, 9, 30)}), (Fitted{30, {16, 30}}));
}

TEST(FitColumns, CountsTheColumnBeforeAnEmptyOneOnceMore) {
    const std::vector<FittedColumn> columns{Fixed(5), LeftOut(9), Fixed(3)};
    // Takes 7, again 7, then 6; 20 fits. Two columns: 8 + 1 + 4 = 13.
    EXPECT_EQ(Fit(20, columns), (Fitted{13, {5, 9, 3}}));
    // 14 fits. The last column does not, but no column after it ends the walk.
    EXPECT_EQ(Fit(14, columns), (Fitted{13, {5, 9, 3}}));
    // 14 does not fit 13: the walk ends at n = 2 - 1 and the empty column is taken off: n = 0. Room 13 > 8,
    // so the line is as wide as the content alone.
    EXPECT_EQ(Fit(13, columns), (Fitted{8, {5, 9, 3}}));
}

TEST(FitColumns, SharesNothingWhenMoreColumnsAreFixedThanThereIsRoomFor) {
    // 14 does not fit 13: n = 0 as above, but the first column was counted: divisor 0 - 1. Content 15 > 13.
    EXPECT_EQ(Fit(13, {Fixed(5), LeftOut(9), Elastic(3, 10)}), (Fitted{13, {5, 9, 10}}));
    // n = 1 and no fixed column with room: takes 3+2 = 5, again 5, then 10 does not fit 9: n = 2 - 1 - 1 = 0;
    // divisor 0.
    EXPECT_EQ(Fit(9, {Elastic(3, 10), LeftOut(9), Elastic(3, 10)}), (Fitted{9, {10, 9, 10}}));
}

TEST(FitColumns, ChangesColumnsByTheirPlaceAmongAllColumns) {
    // The empty column in front is one of all columns, n = 3 - 1 = 2 reaches the first elastic column only.
    // Takes 0, 0 + 6 (index 1), 6: room 25 - 1 - 4 = 20 < 40; 20 for 2 columns.
    EXPECT_EQ(Fit(25, {LeftOut(9), Elastic(3, 20), Elastic(3, 20)}), (Fitted{25, {9, 10, 20}}));
}

TEST(FitColumns, GivesAColumnWithoutASetMinimumItsShareAlone) {
    // A minimum of -1 takes -1+2 = 1, then 5+3 = 8: 9 fits 10. Room 10 - 1 - 4 = 5; 5 - 5 = 0: unchanged.
    EXPECT_EQ(Fit(10, {Elastic(-1, 20), Fixed(5)}), (Fitted{10, {20, 5}}));
    // 13: 8 - 5 = 3 for 1 column.
    EXPECT_EQ(Fit(13, {Elastic(-1, 20), Fixed(5)}), (Fitted{13, {3, 5}}));
    // Two of them share 1: 0 and rest 1. Takes 1, 2, 8: 11 fits 14; room 14 - 2 - 6 = 6.
    EXPECT_EQ(Fit(14, {Elastic(-1, 20), Elastic(-1, 20), Fixed(5)}), (Fitted{14, {1, 0, 5}}));
}

TEST(FitColumns, CountsTheWholeSeparator) {
    // Takes 7 and 7. Two columns: 9 + 3 + 4 = 16; room 17 - 7 = 10 > 9.
    EXPECT_EQ(Fit(17, {Fixed(5), Fixed(4)}, 3).lineWidth, 16);
    EXPECT_EQ(Fit(16, {Fixed(5), Fixed(4)}, 3).lineWidth, 16);
    EXPECT_EQ(Fit(15, {Fixed(5), Fixed(4)}, 3).lineWidth, 15);
    // Without a separator 9 + 4 = 13.
    EXPECT_EQ(Fit(20, {Fixed(5), Fixed(4)}, 0).lineWidth, 13);
}

TEST(FitColumns, MakesALineOfNothingOfEmptyColumns) {
    EXPECT_EQ(Fit(80, {LeftOut(4), LeftOut(9)}), (Fitted{0, {4, 9}}));
}

}  // namespace
