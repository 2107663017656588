#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <vector>

#include "krvcmd/console/table_item.h"

namespace Ostrel::UI::Console {

// One row: its cells in the order in which they were added. It does not own them; whoever created them
// keeps them alive as long as the row. The same cell may stand in several rows.
class CTableRow {
  public:
    CTableRow() = default;

    // Makes room for `cellCount` cells in `memory`, which must outlive the row.
    CTableRow(std::size_t cellCount, std::pmr::memory_resource* memory) : m_cells(memory) {
        m_cells.reserve(cellCount);
    }

    void AddItem(const CTableItem& item) { m_cells.push_back(&item); }

    // The first cell of that column, null when the row has none.
    const CTableItem* FindItem(std::uint32_t columnId) const;

    std::span<const CTableItem* const> GetItems() const { return m_cells; }

    // Ask for what showing the row will read, so that it is at hand by then: first the list of its cells,
    // some rows later the cells.
    void FetchList() const {
        constexpr std::size_t kPerCacheLine = 64 / sizeof(void*);
        for (std::size_t index = 0; index < m_cells.size(); index += kPerCacheLine)
            __builtin_prefetch(&m_cells[index]);
    }
    void FetchCells() const {
        for (const CTableItem* item : m_cells)
            __builtin_prefetch(item);
    }

  private:
    std::pmr::vector<const CTableItem*> m_cells;
};

}  // namespace Ostrel::UI::Console
