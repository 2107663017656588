#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/console/table/table.h"
#include "krvcmd/console/text/safe_text.h"

namespace Ostrel::UI::Console {

// A column that has a place in the table's lines.
struct LaidOutColumn {
    const CTableColumn* column;
    uint32_t width;  // 1 or more
    bool hasCells;   // false: an empty column that is shown all the same
    bool isFirst;    // the first of all columns, also of those that have no place
};

// How the lines of a table are built. Refers to the columns and the separator of the table.
struct TableLayout {
    std::vector<LaidOutColumn> columns;
    std::string_view separator;
    size_t lineWidth;
    Sink sink;
};

// The lines of a table as text; "%%" in them stands for one per cent sign.

// The line of titles and the underline.
std::string HeaderText(const TableLayout& layout);

// The rows with aligned cells, in lines of the layout's width, and an empty line behind them.
std::string FormattedBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows);

// Whether the line looks like one whose last cell is a percent cell. Such a line is left as long as it is:
// its doubled per cent sign would throw the width off.
bool EndsInPercentCell(std::string_view line);

// The rows with their cells' full texts and nothing but the separator between them. A cell that a row lacks
// is an empty text.
std::string PlainBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows);

}  // namespace Ostrel::UI::Console
