#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Number;
using krvcmd::test::Text;
using krvcmd::test::TextTable;

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// A table of up to eight columns, elastic and fixed ones, some of them empty, with texts without per cent
// signs.
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
