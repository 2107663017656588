#pragma once

#include <cstdint>
#include <span>

namespace Ostrel::UI::Console {

// A column as far as fitting is concerned; all widths in positions of a line.
struct FittedColumn {
    int64_t minWidth;  // not 0: the column is elastic, fitting may change its width
    int64_t maxWidth;  // above 0: a wider column counts as fixed; this does not limit the width
    int64_t width;     // in: the natural width; out: the fitted one
    bool isLeftOut;    // empty and therefore not shown
};

// Fits columns into lines of `maxWidth` positions (0: no limit) and returns the width of the lines.
// `contentWidth` is the sum of the natural widths of all columns that are shown. Each shown column has a
// blank on either side, and `separatorLength` positions lie between two columns. When everything fits, the
// widths stay; otherwise the elastic columns share what the fixed ones leave.
int64_t FitColumns(int64_t maxWidth, int64_t contentWidth, int64_t separatorLength,
                   std::span<FittedColumn> columns);

}  // namespace Ostrel::UI::Console
