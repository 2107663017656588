#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace Ostrel::UI::Console {

class CTableRow;

// One level of a table's sort order. The direction is the result of comparing a new row's cell with an
// existing row's cell that puts the new row in front: -1 ascending, +1 descending.
struct SortKey {
    uint32_t columnId;
    int32_t direction;
};

inline constexpr int32_t kAscending = -1;
inline constexpr int32_t kDescending = 1;

// Sorts `rows`, given in the order of arrival, by `keys`: by the first key, rows equal in it by the second,
// and so on. Rows equal in all keys stay in the order of arrival. A missing cell is less than any cell.
std::vector<const CTableRow*> OrderRows(std::span<const CTableRow* const> rows,
                                        std::span<const SortKey> keys);

}  // namespace Ostrel::UI::Console
