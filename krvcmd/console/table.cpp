#include "krvcmd/console/table.h"

#include <algorithm>

#include "krvcmd/console/display_text.h"
#include "krvcmd/console/row_order.h"

namespace Ostrel::UI::Console {

void CTable::SetColumns(std::vector<CTableColumn> columns) {
    m_columns = std::move(columns);
    m_contentWidth = 0;
    for (const CTableColumn& column : m_columns) {
        m_contentWidth += static_cast<std::uint32_t>(DisplayLength(column.GetTitle()));
    }
}

bool CTable::IsColumnEmpty(std::size_t index) const {
    return index >= m_columns.size() || FindUsage(m_columns[index].GetColumnId()) == nullptr;
}

const ColumnUsage* CTable::FindUsage(std::uint32_t columnId) const {
    const auto found =
        std::find_if(m_columnUsage.begin(), m_columnUsage.end(),
                     [columnId](const ColumnUsage& usage) { return usage.columnId == columnId; });
    return found == m_columnUsage.end() ? nullptr : &*found;
}

void CTable::AddRow(CTableRow row) {
    if (m_columns.empty() || row.GetItems().empty()) return;
    // Rows mostly have the same cells in the same order as the rows before them: the entry of a cell is
    // looked for behind that of the cell before it first.
    std::size_t expected = 0;
    for (const CTableItem* item : row.GetItems())
        expected = CountCell(*item, expected) + 1;
    m_contentWidth = 0;
    m_rows.push_back(std::move(row));
}

std::size_t CTable::CountCell(const CTableItem& item, std::size_t expected) {
    const auto length = static_cast<std::int32_t>(DisplayLength(item.GetText()));
    const auto belongs = [&item](const ColumnUsage& usage) { return usage.columnId == item.GetColumnId(); };
    auto usage =
        m_columnUsage.begin() + static_cast<std::ptrdiff_t>(std::min(expected, m_columnUsage.size()));
    usage = std::find_if(usage, m_columnUsage.end(), belongs);
    if (usage == m_columnUsage.end())
        usage = std::find_if(m_columnUsage.begin(), m_columnUsage.end(), belongs);
    if (usage == m_columnUsage.end()) {
        m_columnUsage.push_back({length, item.GetColumnId(), 1});
        return m_columnUsage.size() - 1;
    }
    usage->maxTextLength = std::max(usage->maxTextLength, length);
    ++usage->count;
    return static_cast<std::size_t>(usage - m_columnUsage.begin());
}

std::vector<const CTableRow*> CTable::GetRowsInOrder() const {
    std::vector<const CTableRow*> rows;
    rows.reserve(m_rows.size());
    for (const CTableRow& row : m_rows)
        rows.push_back(&row);
    OrderRows(rows, GetDecisiveSortKeys());
    return rows;
}

std::vector<SortKey> CTable::GetDecisiveSortKeys() const {
    std::vector<SortKey> keys;
    for (const SortKey& key : m_sortKeys) {
        const bool isRepeated = std::any_of(keys.begin(), keys.end(), [&key](const SortKey& earlier) {
            return earlier.columnId == key.columnId;
        });
        if (!isRepeated && FindUsage(key.columnId) != nullptr) keys.push_back(key);
    }
    return keys;
}

}  // namespace Ostrel::UI::Console
