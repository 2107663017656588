#include "krvcmd/console/table/table_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/captured_output.h"
#include "tests/unit/console/support/text_table.h"

// Tables as they look. Widths: a cell has a blank on either side; between two columns stands "|".
namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::CellsOf;
using krvcmd::test::ColumnSketch;
using krvcmd::test::Lines;
using krvcmd::test::Number;
using krvcmd::test::Percent;
using krvcmd::test::Text;
using krvcmd::test::TextTable;

constexpr uint32_t kNameColumn = 1;
constexpr uint32_t kCountColumn = 2;
constexpr uint32_t kStatusColumn = 3;
constexpr uint32_t kUsedColumn = 4;
constexpr ColumnSketch kPercentColumn{kUsedColumn, "Used Capa", 0, 0, /*hidesSign=*/true};

TEST(PrintTable, PrintsNothingWithoutColumns) {
    TextTable table(80, {});
    table.AddTexts({{kNameColumn, "alpha"}});
    EXPECT_EQ(table.Printed(), "");
}

TEST(PrintTable, PrintsNothingWithoutRows) {
    TextTable table(80, {{kNameColumn, "Name"}});
    EXPECT_EQ(table.Printed(), "");
    EXPECT_EQ(table.PrintedPlain(), "");
}

TEST(PrintTable, PrintsNothingWhenNoRowHasACell) {
    TextTable table(80, {{kNameColumn, "Name"}});
    table.AddTexts({});
    table.AddTexts({});
    EXPECT_EQ(table.Printed(), "");
}

TEST(PrintTable, ShowsHeaderUnderlineAndAlignedRows) {
    // Name: 5 for "alpha". Count: 8 for the number. 5 + 8 + 2 * 2 blanks + 1 separator = 18.
    TextTable table(80, {{kNameColumn, "Name"}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    table.Add(CellsOf(Text(kNameColumn, "be"), Number(kCountColumn, 12345678)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Name  |  Count   ",
                                   "------------------",
                                   " alpha |        5 ",
                                   " be    | 12345678 ",
                                   "",
                               }));
}

TEST(PrintTable, ShowsTheSameTableAgainWhenPrintedTwice) {
    TextTable table(80, {{kNameColumn, "Name"}});
    table.AddTexts({{kNameColumn, "alpha"}});
    const std::string once = table.Printed();
    EXPECT_EQ(once, Lines({" Name  ", "-------", " alpha ", ""}));
    EXPECT_EQ(table.Printed(), once);
}

TEST(PrintTable, KeepsNaturalWidthsWithoutAConsole) {
    // 32767 is the width without a console; lines are not filled up to it.
    TextTable table(32767, {{kNameColumn, "Name"}});
    table.AddTexts({{kNameColumn, std::string(300, 'x')}});
    EXPECT_EQ(table.Printed(), Lines({
                                   " " + std::string(148, ' ') + "Name" + std::string(148, ' ') + " ",
                                   std::string(302, '-'),
                                   " " + std::string(300, 'x') + " ",
                                   "",
                               }));
}

TEST(PrintTable, HasNoLimitInWidthZero) {
    TextTable table(0, {{kNameColumn, "Name"}});
    table.AddTexts({{kNameColumn, "abcdefghijklmnopqrstuvwxyz"}});
    EXPECT_EQ(table.Printed(), Lines({
                                   "            Name            ",
                                   "----------------------------",
                                   " abcdefghijklmnopqrstuvwxyz ",
                                   "",
                               }));
}

TEST(PrintTable, LeavesACellBlankThatARowLacks) {
    TextTable table(80, {{kNameColumn, "Name"}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    table.Add(CellsOf(Text(kNameColumn, "be")));
    table.Add(CellsOf(Number(kCountColumn, 7)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Name  | Count ",
                                   "---------------",
                                   " alpha |     5 ",
                                   " be    |       ",
                                   "       |     7 ",
                                   "",
                               }));
}

TEST(PrintTable, LeavesOutColumnsThatNoRowFills) {
    // 5 + 5 + 2 * 2 + 1 = 15.
    TextTable table(80, {{kNameColumn, "Name"}, {kStatusColumn, "Status"}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Name  | Count ",
                                   "---------------",
                                   " alpha |     5 ",
                                   "",
                               }));
}

TEST(PrintTable, BeginsItsRowsWithASeparatorWhenTheFirstColumnIsLeftOut) {
    // The header does not, so titles and cells stand apart. 5 + 5 + 4 + 1 = 15: the row's last blank is cut.
    TextTable table(80, {{kStatusColumn, "Status"}, {kNameColumn, "Name"}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Name  | Count ",
                                   "---------------",
                                   "| alpha |     5",
                                   "",
                               }));
}

TEST(PrintTable, ShowsEmptyColumnsOnRequest) {
    // 5 + 6 + 5 + 3 * 2 + 2 = 24.
    TextTable table(80, {{kNameColumn, "Name"}, {kStatusColumn, "Status"}, {kCountColumn, "Count"}});
    table.SetShowEmptyColumns(true);
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Name  | Status | Count ",
                                   "------------------------",
                                   " alpha |        |     5 ",
                                   "",
                               }));
    EXPECT_EQ(table.PrintedPlain(), "alpha||5\n");
}

TEST(PrintTable, ShowsAColumnAsOftenAsItIsChosen) {
    TextTable table(80, {{kNameColumn, "Name"}, {kNameColumn, "Again"}});
    table.AddTexts({{kNameColumn, "alpha"}});
    EXPECT_EQ(table.Printed(), Lines({" Name  | Again ", "---------------", " alpha | alpha ", ""}));
}

TEST(PrintTable, PrintsEmptyLinesWhenRowsFillNoneOfItsColumns) {
    // The usage list is not empty, so the table is printed: lines of width 0.
    TextTable table(80, {{kNameColumn, "Name"}});
    table.AddTexts({{kStatusColumn, "active"}});
    table.AddTexts({{kStatusColumn, "active"}});
    EXPECT_EQ(table.Printed(), "\n\n\n\n\n");
}

TEST(PrintTable, StopsAtTheFirstColumnThatDoesNotFit) {
    // Both columns fixed: 8 and 8. Width 20: the walk counts 10 and 10 + 11 = 21 does not fit; line 20.
    // After the first cell (10) the second one needs 10 more: 20 fits (the separator is not asked for), and
    // makes 21 characters, of which the last is cut.
    TextTable table(20, {{kNameColumn, "Name"}, {kStatusColumn, "Status"}, {kCountColumn, "Count"}});
    table.Add(
        CellsOf(Text(kNameColumn, "alphabet"), Text(kStatusColumn, "disabled"), Number(kCountColumn, 5)));
    EXPECT_EQ(table.Printed(), Lines({
                                   "   Name   |  Status ",
                                   "--------------------",
                                   " alphabet | disabled",
                                   "",
                               }));
    // 19: the second column is left out, and with it all after it, also the narrow third.
    table.SetMaxWidth(19);
    EXPECT_EQ(table.Printed(), Lines({
                                   "   Name            ",
                                   "----------",
                                   " alphabet          ",
                                   "",
                               }));
}

TEST(PrintTable, ShowsNothingOfACellThatOnlyFitsWithoutItsBlanks) {
    // One fixed column of 8. Width 9: one blank too few.
    TextTable table(9, {{kNameColumn, "Name"}});
    table.AddTexts({{kNameColumn, "alphabet"}});
    EXPECT_EQ(table.Printed(), Lines({"         ", "", "         ", ""}));
    // Width 8: a cell that fills the line takes one blank only, which is still one too many.
    table.SetMaxWidth(8);
    EXPECT_EQ(table.Printed(), Lines({"        ", "", "        ", ""}));
    // Width 7: a title that is one longer than the line takes one blank only, which helps it as little.
    table.SetMaxWidth(7);
    EXPECT_EQ(table.Printed(), Lines({"       ", "", "       ", ""}));
}

TEST(PrintTable, MakesElasticColumnsGiveWay) {
    // Name: minimum 4, natural 10. Count: 5. Width 17: takes 6, then 8: 14 fits. Room 17 - 1 - 4 = 12 for 15;
    // 12 - 5 = 7 for the one elastic column.
    TextTable table(17, {{kNameColumn, "Name", 4}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, "abcdefghij"), Number(kCountColumn, 5)));
    table.Add(CellsOf(Text(kNameColumn, "abc"), Number(kCountColumn, 60)));
    EXPECT_EQ(table.Printed(), Lines({
                                   "  Name   | Count ",
                                   "-----------------",
                                   " ...ghij |     5 ",
                                   " abc     |    60 ",
                                   "",
                               }));
}

TEST(PrintTable, PadsLinesThatFittingMadeNarrowerThanTheLine) {
    // Name: minimum 10, maximum 12, natural 30; it counts as fixed with 12. Status: 6. Width 30: room 25;
    // 25 - 12 - 6 = 7, divisor 2: share 3, so the minimum 10, and 1 of the rest. 13 + 1 + 8 = 22 of 30.
    TextTable table(30, {{kNameColumn, "Name", 10, 12}, {kStatusColumn, "Status"}});
    table.AddTexts({{kNameColumn, std::string(30, 'x')}, {kStatusColumn, "active"}});
    EXPECT_EQ(table.Printed(), Lines({
                                   "    Name     | Status         ",
                                   "----------------------",
                                   " ...xxxxxxxx | active         ",
                                   "",
                               }));
}

TEST(PrintTable, DoesNotPadALineThatEndsInAPercentSign) {
    // Status is 7 wide here: 25 - 12 - 7 = 6, share 3, rest 0: 10. 12 + 1 + 9 = 22 of 30. The text ends in
    // "%" at its full width, so its line looks as if it ended in a percent cell.
    TextTable table(30, {{kNameColumn, "Name", 10, 12}, {kStatusColumn, "Status"}});
    table.AddTexts({{kNameColumn, std::string(30, 'x')}, {kStatusColumn, "full 9%"}});
    EXPECT_EQ(table.Printed(), Lines({
                                   "    Name    | Status          ",
                                   "----------------------",
                                   " ...xxxxxxx | full 9% ",
                                   "",
                               }));
}

TEST(PrintTable, ShowsPercentCellsWithOnePercentSign) {
    // "Used Capa" is 9 wide: 11 for the line. The row has 12 characters, of which one percent sign does not
    // show.
    TextTable table(80, {kPercentColumn});
    table.Add(CellsOf(Percent(kUsedColumn, 50)));
    table.Add(CellsOf(Percent(kUsedColumn, 100)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Used Capa ",
                                   "-----------",
                                   "       50% ",
                                   "      100% ",
                                   "",
                               }));
}

TEST(PrintTable, CutsALineAfterAPercentCellByOneCharacter) {
    // 9 + 6 + 4 + 1 = 20. The row has 21 characters with both percent signs and is cut to 20; 19 show. A row
    // without the percent cell keeps its 20.
    TextTable table(80, {kPercentColumn, {kStatusColumn, "Status"}});
    table.Add(CellsOf(Percent(kUsedColumn, 50), Text(kStatusColumn, "active")));
    table.Add(CellsOf(Text(kStatusColumn, "active")));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Used Capa | Status ",
                                   "--------------------",
                                   "       50% | active",
                                   "           | active ",
                                   "",
                               }));
}

TEST(PrintTable, MakesRoomForEveryPercentCellOfALine) {
    // 9 + 9 + 4 + 1 = 23 and 2 more for the signs that do not show: 25 characters, 23 of them seen.
    TextTable table(80, {kPercentColumn, kPercentColumn});
    table.Add(CellsOf(Percent(kUsedColumn, 7)));
    EXPECT_EQ(table.Printed(), Lines({
                                   " Used Capa | Used Capa ",
                                   "-----------------------",
                                   "        7% |        7% ",
                                   "",
                               }));
}

TEST(PrintTable, LeavesOutAPercentCellThatDoesNotFit) {
    // Name is 8 wide, per cent 9: width 20 counts the name only (10, then 10 + 12 = 22). Line 20; 10 for the
    // name and 1 + 10 + 1 for the percent cell are 22 of the 21 that a line with a percent cell may have.
    TextTable table(20, {{kNameColumn, "Name"}, kPercentColumn});
    table.Add(CellsOf(Text(kNameColumn, "alphabet"), Percent(kUsedColumn, 50)));
    EXPECT_EQ(table.Printed(), Lines({
                                   "   Name             ",
                                   "----------",
                                   " alphabet           ",
                                   "",
                               }));
    // 21: 22 of 22. The title needs 10 + 11 = 21. The whole line has 10 + 1 + 12 = 23 characters.
    table.SetMaxWidth(21);
    EXPECT_EQ(table.Printed(), Lines({
                                   "   Name   | Used Capa",
                                   "---------------------",
                                   " alphabet |       50% ",
                                   "",
                               }));
}

TEST(PrintTable, PrintsForeignPercentSignsAsThemselves) {
    TextTable table(80, {{kNameColumn, "Name"}});
    table.AddTexts({{kNameColumn, "100%s %n"}});
    table.AddTexts({{kNameColumn, "%d"}});
    EXPECT_EQ(table.Printed(), Lines({"   Name   ", "----------", " 100%s %n ", " %d       ", ""}));
}

TEST(PrintTable, UsesItsSeparator) {
    TextTable table(80, {{kNameColumn, "Name"}, {kCountColumn, "Count"}});
    table.SetSeparator(" :: ");
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    // 5 + 5 + 4 + 4 = 18.
    EXPECT_EQ(table.Printed(), Lines({" Name   ::  Count ", "------------------", " alpha  ::      5 ", ""}));
}

TEST(PrintTable, NeedsNoSeparator) {
    TextTable table(80, {{kNameColumn, "Name"}, {kCountColumn, "Count"}});
    table.SetSeparator("");
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    EXPECT_EQ(table.Printed(), Lines({" Name   Count ", "--------------", " alpha      5 ", ""}));
}

TEST(PrintTable, DoesNotReplaceNamesInCells) {
    TextTable table(80, {{kNameColumn, "Name"}});
    table.AddTexts({{kNameColumn, "[CmdLine]"}});
    EXPECT_EQ(table.Printed(), Lines({"   Name    ", "-----------", " [CmdLine] ", ""}));
}

TEST(PrintTable, ShowsRowsInTheirOrder) {
    TextTable table(80, {{kNameColumn, "Name"}});
    table.SetSortKeys({{kNameColumn, kDescending}});
    for (const char* name : {"Box-9", "Box-10", "Box-1"})
        table.AddTexts({{kNameColumn, name}});
    EXPECT_EQ(table.Printed(), Lines({"  Name  ", "--------", " Box-10 ", " Box-9  ", " Box-1  ", ""}));
}

TEST(PrintPlainTable, JoinsFullTextsWithTheSeparator) {
    TextTable table(20, {{kNameColumn, "Name", 4}, {kCountColumn, "Count"}, kPercentColumn});
    table.SetSeparator(",");
    table.Add(CellsOf(Text(kNameColumn, "a name that is longer than the line"), Number(kCountColumn, 5),
                      Percent(kUsedColumn, 50)));
    table.Add(CellsOf(Text(kNameColumn, "be"), Number(kCountColumn, 1234567), Percent(kUsedColumn, 7)));
    EXPECT_EQ(table.PrintedPlain(), "a name that is longer than the line,5,50%\nbe,1234567,7%\n");
}

TEST(PrintPlainTable, ShowsACellThatARowLacksAsAnEmptyText) {
    TextTable table(80, {{kNameColumn, "Name"}, {kCountColumn, "Count"}, {kStatusColumn, "Status"}});
    table.Add(CellsOf(Number(kCountColumn, 5)));
    table.Add(CellsOf(Text(kNameColumn, "be")));
    table.Add(CellsOf(Text(kNameColumn, "c"), Text(kStatusColumn, "on")));
    EXPECT_EQ(table.PrintedPlain(), "|5|\nbe||\nc||on\n");
}

TEST(PrintPlainTable, LeavesOutEmptyColumnsButKeepsTheSeparatorBeforeLaterOnes) {
    TextTable table(
        80, {{kStatusColumn, "Status"}, {kNameColumn, "Name"}, {9, "Empty"}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, "alpha"), Number(kCountColumn, 5)));
    EXPECT_EQ(table.PrintedPlain(), "|alpha|5\n");
}

TEST(PrintPlainTable, LeavesOutAColumnThatFittingMadeZeroWide) {
    // Two columns without a set minimum share 1: the second one gets 0 and so has no place. Width 14: takes
    // 1, 2, 8; room 14 - 2 - 6 = 6; 6 - 5 = 1 for 2 columns.
    TextTable table(14, {{kNameColumn, "Name", -1}, {kStatusColumn, "Status", -1}, {kCountColumn, "Count"}});
    table.Add(CellsOf(Text(kNameColumn, std::string(20, 'x')), Text(kStatusColumn, std::string(20, 'y')),
                      Number(kCountColumn, 5)));
    EXPECT_EQ(table.PrintedPlain(), std::string(20, 'x') + "|5\n");
}

TEST(EndsInPercentCell, LooksAtTheNextToLastCharacter) {
    EXPECT_TRUE(EndsInPercentCell(" 50%% "));
    EXPECT_TRUE(EndsInPercentCell("% "));
    EXPECT_FALSE(EndsInPercentCell(" 50%%  "));
    EXPECT_FALSE(EndsInPercentCell("%"));
    EXPECT_FALSE(EndsInPercentCell(""));
}

TEST(EndsInPercentCell, LooksAtTheThirdFromLastAndTheLastCharacter) {
    EXPECT_TRUE(EndsInPercentCell("%x%"));
    EXPECT_FALSE(EndsInPercentCell("%xx"));
    EXPECT_FALSE(EndsInPercentCell("xx%"));
    EXPECT_FALSE(EndsInPercentCell("x%"));
}

// ---- What holds for every table -------------------------------------------------------

using namespace Ostrel::UI::Console;
std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// A table of up to eight columns, elastic and fixed ones, some of them empty, without percent signs.
class RandomTable {
  public:
    RandomTable(unsigned seed, uint32_t maxWidth) : m_random(seed), m_table(maxWidth, {}) {
        std::vector<CTableColumn> columns(Below(8) + 1);
        for (CTableColumn& column : columns) {
            column.SetColumnId(Below(8) + 1);
            column.SetTitle(std::string(Below(12) + 1, 'T'));
            static constexpr int32_t kMinWidths[] = {0, 0, 0, 3, 10, -1};
            static constexpr int32_t kMaxWidths[] = {0, 0, 12, 40};
            column.SetMinWidth(kMinWidths[Below(6)]);
            column.SetMaxWidth(kMaxWidths[Below(4)]);
        }
        m_table.SetColumns(columns);
        m_table.SetShowEmptyColumns(Below(4) == 0);
        m_table.SetSeparator(std::string(Below(3), '|'));
        m_rowCount = Below(5) + 1;
        for (unsigned row = 0; row < m_rowCount; ++row) {
            TextTable::Cells cells;
            cells.push_back(Number(100, row));
            for (uint32_t columnId = 1; columnId <= 8; ++columnId) {
                if (Below(3) == 0) continue;
                if (columnId % 3 == 0) {
                    cells.push_back(Number(columnId, static_cast<int64_t>(m_random()) << Below(31)));
                } else {
                    cells.push_back(Text(columnId, std::string(Below(30), 'x')));
                }
            }
            m_table.Add(std::move(cells));
        }
    }

    TextTable& Table() { return m_table; }
    unsigned RowCount() const { return m_rowCount; }

  private:
    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    std::mt19937 m_random;
    TextTable m_table;
    unsigned m_rowCount = 0;
};

TEST(TableLayout, HasOneHeaderAnUnderlineAndARowPerLineInEveryWidth) {
    for (uint32_t maxWidth = 0; maxWidth <= 300; ++maxWidth) {
        for (unsigned seed = 0; seed < 8; ++seed) {
            RandomTable random(maxWidth * 8 + seed, maxWidth);
            const std::vector<std::string> lines = LinesOf(random.Table().Printed());
            // Header, underline, rows, an empty line.
            ASSERT_EQ(lines.size(), random.RowCount() + 3) << "width " << maxWidth << ", seed " << seed;
            EXPECT_EQ(lines.back(), "");
        }
    }
}

TEST(TableLayout, HasLinesOfOneLengthThatIsNotAboveTheWidth) {
    for (uint32_t maxWidth = 0; maxWidth <= 300; ++maxWidth) {
        for (unsigned seed = 0; seed < 8; ++seed) {
            RandomTable random(maxWidth * 8 + seed, maxWidth);
            std::vector<std::string> lines = LinesOf(random.Table().Printed());
            lines.pop_back();
            const size_t width = lines.front().size();
            if (maxWidth != 0) {
                EXPECT_LE(width, maxWidth);
            }
            const std::string underline = lines[1];
            EXPECT_LE(underline.size(), width);
            EXPECT_EQ(underline.find_first_not_of('-'), std::string::npos);
            lines.erase(lines.begin() + 1);
            for (const std::string& line : lines) {
                EXPECT_EQ(line.size(), width) << "width " << maxWidth << ", seed " << seed;
            }
        }
    }
}

}  // namespace
