#pragma once

#include <cstdint>
#include <span>

namespace Ostrel::UI::Console {

// A column as far as fitting is concerned; all widths in characters.
struct FittedColumn {
    int64_t minWidth;  // not 0: the column is elastic, its width may be changed
    int64_t maxWidth;  // above 0: a wider column counts as fixed; it does not limit the width
    int64_t width;     // the natural width, or what fitting makes of it
    bool isLeftOut;    // empty and therefore not shown
};

// Fits columns into lines of `maxWidth` characters (0 is no limit) and gives the width of the lines.
// `contentWidth` is the sum of the natural widths of all columns that are shown. Each shown column has a
// blank on either side, and `separatorLength` characters stand between two columns. When everything fits, the
// widths stay; otherwise elastic columns share what the fixed ones leave.
int64_t FitColumns(int64_t maxWidth, int64_t contentWidth, int64_t separatorLength,
                   std::span<FittedColumn> columns);

}  // namespace Ostrel::UI::Console
