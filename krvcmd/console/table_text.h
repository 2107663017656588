#pragma once

#include <span>
#include <string>

#include "krvcmd/console/table_layout.h"
#include "krvcmd/console/table_row.h"

namespace Ostrel::UI::Console {

// The lines of a table as text; "%%" in them stands for one per cent sign.

// The line of titles and the underline.
std::string HeaderText(const TableLayout& layout);

// The rows with aligned cells, in lines of the layout's width.
std::string FormattedBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows);

// The rows with their cells' full texts and nothing but the separator between them. A cell that a row lacks
// is an empty text.
std::string PlainBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows);

}  // namespace Ostrel::UI::Console
