#pragma once

#include <span>
#include <vector>

#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {

// The rows, given in the order in which they arrived, in the order of the keys.
//
// The order is that of an insertion: each arriving row goes in front of the first row that it comes before,
// else to the end. It comes before another row when the first key in which the two differ says so; a missing
// cell is less than any cell. Every key compares by a value of the cell alone (its number, or its text taken
// apart), so rows that do not differ in a key are interchangeable for it and the keys, one after the other,
// rank the rows with ties (a total preorder). For such a ranking the rows in front of the insertion point are
// exactly those that do not come after the new row; inserting so one by one is a stable sort, and a stable
// sort is what is done here.
std::vector<const CTableRow*> OrderRows(std::span<const CTableRow* const> rows,
                                        std::span<const SortKey> keys);

}  // namespace Ostrel::UI::Console
