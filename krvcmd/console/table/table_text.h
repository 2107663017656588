#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {

// A column that is shown.
struct LaidOutColumn {
    const CTableColumn* column;
    uint32_t width;      // 1 or more
    bool hasCells;       // false: an empty column that is shown all the same
    bool isFirst;        // the first of all columns, including those that are not shown
    size_t hiddenSigns;  // characters at the end of each cell that the console does not show
};

// How the lines of a table are built. Refers to the columns and the separator of the table.
struct TableLayout {
    std::vector<LaidOutColumn> columns;
    std::string_view separator;
    size_t separatorLength;  // in positions
    size_t lineWidth;        // in positions
};

// The texts of a table, as the console shows them: "%%" in titles, cells and separators is one percent sign.

// The line of titles and the underline.
std::string HeaderText(const TableLayout& layout);

// The rows with aligned cells, in lines of the layout's width, and an empty line after them.
std::string FormattedBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows);

// The rows with their cells' full texts and only the separator between them. A missing cell is an empty text.
std::string PlainBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows);

// Whether the line looks as if its last cell were a percent cell: its next-to-last character is "%", or its
// third-from-last and its last one are. Such a line is neither padded nor cut, because its doubled percent
// sign would throw the width off.
bool EndsInPercentCell(std::string_view line);

}  // namespace Ostrel::UI::Console
