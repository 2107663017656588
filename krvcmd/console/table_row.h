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

  private:
    std::pmr::vector<const CTableItem*> m_cells;
};

}  // namespace Ostrel::UI::Console
