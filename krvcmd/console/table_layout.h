#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "krvcmd/console/control_characters.h"
#include "krvcmd/console/table_column.h"

namespace Ostrel::UI::Console {

// A column that has a place in the table's lines.
struct LaidOutColumn {
    const CTableColumn* column;
    std::uint32_t width;  // 1 or more
    bool hasCells;        // false: an empty column that is shown all the same
    bool isFirst;         // the first of all columns, also of those that have no place
};

// How the lines of a table are built. Refers to the columns and the separator of the table.
struct TableLayout {
    std::vector<LaidOutColumn> columns;
    std::string_view separator;
    std::size_t lineWidth;
    Sink sink;
};

}  // namespace Ostrel::UI::Console
