#pragma once

#include <cstddef>
#include <span>

#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {

// Sorted rows lie scattered in memory, and waiting for each of them takes longer than working with it. A
// loop over rows therefore prefetches the next ones: first a row, some rows later the list of its cells,
// and again some rows later the cells.

inline constexpr size_t kPrefetchStep = 6;  // rows between two steps

// g++ takes a call of a function that only prefetches for a call without effect, so these are always inlined.

[[gnu::always_inline]] inline void PrefetchRow(const CTableRow& row) {
    __builtin_prefetch(&row);
}

[[gnu::always_inline]] inline void PrefetchCellList(const CTableRow& row) {
    constexpr size_t kPerCacheLine = 64 / sizeof(void*);
    const std::span<const CTableItem* const> items = row.GetItems();
    for (size_t index = 0; index < items.size(); index += kPerCacheLine)
        __builtin_prefetch(&items[index]);
}

[[gnu::always_inline]] inline void PrefetchCells(const CTableRow& row) {
    for (const CTableItem* item : row.GetItems())
        __builtin_prefetch(item);
}

}  // namespace Ostrel::UI::Console
