#pragma once

#include <string_view>

namespace krvcmd::reliability {

// Whether `shown` is the table `whole`, printed with "|" between the cells, but for one cell of one row: its
// place is blank, or its column is not there at all when no other row fills it. Blanks around cells, the
// widths of columns and the order of rows may differ: all of them depend on the cells.
bool LacksOneCell(std::string_view shown, std::string_view whole);

// Whether both have as many rows. Where the width is limited a missing cell can make room for a column that
// is left out otherwise, so that no more can be said.
bool HasAsManyLines(std::string_view shown, std::string_view whole);

}  // namespace krvcmd::reliability
