#pragma once

#include <span>
#include <string>
#include <string_view>

#include "krvcmd/console/table_layout.h"
#include "krvcmd/console/table_row.h"

namespace Ostrel::UI::Console {

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
