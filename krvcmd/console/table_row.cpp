#include "krvcmd/console/table_row.h"

#include <algorithm>

namespace Ostrel::UI::Console {

const CTableItem* CTableRow::FindItem(std::uint32_t columnId) const {
    const auto found = std::find_if(m_cells.begin(), m_cells.end(), [columnId](const CTableItem* item) {
        return item->GetColumnId() == columnId;
    });
    return found == m_cells.end() ? nullptr : *found;
}

}  // namespace Ostrel::UI::Console
