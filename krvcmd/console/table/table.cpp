#include "krvcmd/console/table/table.h"

#include <algorithm>

#include "krvcmd/console/text/display_width.h"

namespace Ostrel::UI::Console {

void CTableColumn::SetTitle(std::string_view title) {
    m_title = title;
    m_width = static_cast<uint32_t>(DisplayLength(title));
    m_minWidth = -1;
}

uint32_t CTableColumn::GetWidth(bool useTitle) const {
    return m_width == 0 && useTitle ? static_cast<uint32_t>(DisplayLength(m_title)) : m_width;
}

std::string CTableColumn::RenderTitle(uint32_t width) const {
    if (width == 0) return m_title;
    const size_t length = DisplayLength(m_title);
    if (length > width) return std::string(LeadingPart(m_title, width));
    const size_t blanks = width - length;
    const size_t inFront = blanks / 2;
    return std::string(inFront, ' ').append(m_title).append(blanks - inFront, ' ');
}

const CTableItem* CTableRow::FindItem(uint32_t columnId) const {
    const auto found = std::ranges::find(m_cells, columnId, &CTableItem::GetColumnId);
    return found == m_cells.end() ? nullptr : *found;
}

const CTableItem* CellFinder::SearchIn(std::span<const CTableItem* const> items) {
    const auto found = std::ranges::find(items, m_columnId, &CTableItem::GetColumnId);
    if (found == items.end()) return nullptr;
    m_position = static_cast<size_t>(found - items.begin());
    return *found;
}

void CTable::SetColumns(std::vector<CTableColumn> columns) {
    m_columns = std::move(columns);
    m_contentWidth = 0;
    for (const CTableColumn& column : m_columns) {
        m_contentWidth += static_cast<uint32_t>(DisplayLength(column.GetTitle()));
    }
    FindUsedColumns();
}

void CTable::SetSortKeys(std::vector<SortKey> sortKeys) {
    m_sortKeys = std::move(sortKeys);
    FindUsedColumns();
}

void CTable::FindUsedColumns() {
    m_isUsed.clear();
    const auto use = [this](uint32_t columnId) {
        if (columnId >= m_isUsed.size()) m_isUsed.resize(columnId + 1);
        m_isUsed[columnId] = 1;
    };
    for (const CTableColumn& column : m_columns)
        use(column.GetColumnId());
    for (const SortKey& key : m_sortKeys)
        use(key.columnId);
}

bool CTable::IsColumnEmpty(size_t index) const {
    return index >= m_columns.size() || FindUsage(m_columns[index].GetColumnId()) == nullptr;
}

const ColumnUsage* CTable::FindUsage(uint32_t columnId) const {
    const auto found = std::ranges::find(m_columnUsage, columnId, &ColumnUsage::columnId);
    return found == m_columnUsage.end() ? nullptr : &*found;
}

void CTable::AddRow(CTableRow row) {
    if (m_columns.empty() || row.GetItems().empty()) return;
    // Most rows have the same cells in the same order, so a cell's entry usually follows that of the cell
    // before it.
    size_t index = 0;
    for (const CTableItem* item : row.GetItems()) {
        const uint32_t columnId = item->GetColumnId();
        if (index >= m_columnUsage.size() || m_columnUsage[index].columnId != columnId)
            index = EnterUsage(columnId);
        ColumnUsage& usage = m_columnUsage[index++];
        usage.maxTextLength = std::max(usage.maxTextLength, static_cast<int32_t>(item->GetTextLength()));
        ++usage.count;
    }
    m_contentWidth = 0;
    m_rows.push_back(std::move(row));
}

size_t CTable::EnterUsage(uint32_t columnId) {
    const ColumnUsage* usage = FindUsage(columnId);
    if (usage != nullptr) return static_cast<size_t>(usage - m_columnUsage.data());
    m_columnUsage.push_back({0, columnId, 0});
    return m_columnUsage.size() - 1;
}

std::vector<const CTableRow*> CTable::GetRowsInOrder() const {
    std::vector<const CTableRow*> rows;
    rows.reserve(m_rows.size());
    for (const CTableRow& row : m_rows)
        rows.push_back(&row);
    const std::vector<SortKey> keys = GetDecisiveSortKeys();
    if (keys.empty()) return rows;
    return OrderRows(rows, keys);
}

std::vector<SortKey> CTable::GetDecisiveSortKeys() const {
    std::vector<SortKey> keys;
    for (const SortKey& key : m_sortKeys) {
        const bool isRepeated = std::ranges::find(keys, key.columnId, &SortKey::columnId) != keys.end();
        if (!isRepeated && FindUsage(key.columnId) != nullptr) keys.push_back(key);
    }
    return keys;
}

}  // namespace Ostrel::UI::Console
