#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "krvcmd/console/table/row_order.h"
#include "krvcmd/console/table/table_item.h"

namespace Ostrel::UI::Console {

// One column of a table. Widths count positions of a line.
class CTableColumn {
  public:
    // Also sets the width to the title's length and the minimum width to "not set".
    void SetTitle(std::string_view title);
    void SetColumnId(uint32_t columnId) { m_columnId = columnId; }
    void SetMinWidth(int32_t minWidth) { m_minWidth = minWidth; }
    void SetMaxWidth(int32_t maxWidth) { m_maxWidth = maxWidth; }
    void SetWidth(uint32_t width) { m_width = width; }
    // Whether each cell of the column ends in "%%", of which the console shows one sign.
    void SetHidesSign(bool hidesSign) { m_hidesSign = hidesSign; }

    const std::string& GetTitle() const { return m_title; }
    uint32_t GetColumnId() const { return m_columnId; }
    // -1 when not set, 0 for no minimum. A column whose minimum is not 0 is elastic: it gives way when the
    // table is wider than the line.
    int32_t GetMinWidth() const { return m_minWidth; }
    // -1 when not set, 0 for no maximum.
    int32_t GetMaxWidth() const { return m_maxWidth; }
    // With `useTitle`, a column without a width has the title's length.
    uint32_t GetWidth(bool useTitle) const;
    bool HidesSign() const { return m_hidesSign; }

    // The title centred in a field of `width` positions, cut at its end when it is longer; in width 0 the
    // title as it is.
    std::string RenderTitle(uint32_t width) const;

  private:
    int32_t m_minWidth = -1;
    int32_t m_maxWidth = -1;
    uint32_t m_width = 0;
    std::string m_title;
    uint32_t m_columnId = 0;
    bool m_hidesSign = false;
};

// One row: its cells in the order in which they were added. It does not own them; they must outlive the
// row. A cell may be in several rows.
class CTableRow {
  public:
    CTableRow() = default;

    // Keeps the list of these cells in `memory`, which must outlive the row.
    CTableRow(std::span<const CTableItem* const> cells, std::pmr::memory_resource* memory)
        : m_cells(cells.begin(), cells.end(), memory) {}

    void AddItem(const CTableItem& item) { m_cells.push_back(&item); }

    // The first cell of that column, null when the row has none.
    const CTableItem* FindItem(uint32_t columnId) const;

    std::span<const CTableItem* const> GetItems() const { return m_cells; }

  private:
    std::pmr::vector<const CTableItem*> m_cells;
};

// Finds the cells of one column in row after row. Rows of one kind have the same cells in the same order,
// so it looks first where it found the last cell. If a row has several cells of the column, it finds any of
// them.
class CellFinder {
  public:
    explicit CellFinder(uint32_t columnId) : m_columnId(columnId) {}

    // Null when the row has no cell of the column.
    const CTableItem* FindIn(const CTableRow& row) {
        const std::span<const CTableItem* const> items = row.GetItems();
        if (m_position < items.size() && items[m_position]->GetColumnId() == m_columnId)
            return items[m_position];
        return SearchIn(items);
    }

  private:
    const CTableItem* SearchIn(std::span<const CTableItem* const> items);

    uint32_t m_columnId;
    size_t m_position = 0;
};

// What the rows added so far have in one column.
struct ColumnUsage {
    int32_t maxTextLength;  // positions of the longest full text
    uint32_t columnId;
    uint32_t count;  // cells seen
};

// Columns, rows and the order of the rows. Columns and sort keys are set before rows are added. It knows
// nothing of what the rows are about and prints nothing.
class CTable {
  public:
    CTable() = default;
    virtual ~CTable() = default;
    CTable(const CTable&) = delete;
    CTable& operator=(const CTable&) = delete;

    void SetColumns(std::vector<CTableColumn> columns);
    void SetSortKeys(std::vector<SortKey> sortKeys);
    void SetSeparator(std::string_view separator) { m_separator = separator; }
    // Whether columns that no row fills are laid out all the same.
    void SetShowEmptyColumns(bool show) { m_showEmptyColumns = show; }

    const std::string& GetSeparator() const { return m_separator; }
    size_t GetColumnCount() const { return m_columns.size(); }
    const std::vector<CTableColumn>& GetColumns() const { return m_columns; }
    uint32_t GetContentWidth() const { return m_contentWidth; }
    const std::vector<ColumnUsage>& GetColumnUsage() const { return m_columnUsage; }

    // `index` counts from 0. True also for an index beyond the last column.
    bool IsColumnEmpty(size_t index) const;

    // Whether the table shows the column or sorts by it.
    bool Uses(uint32_t columnId) const { return columnId < m_isUsed.size() && m_isUsed[columnId] != 0; }

    // Takes the row over; its cells must live as long as the table. Ignores a row without cells, and any row
    // while there are no columns.
    void AddRow(CTableRow row);

    // The rows in the order in which they are shown: that of the sort keys, or of arrival without keys.
    std::vector<const CTableRow*> GetRowsInOrder() const;

  protected:
    std::vector<CTableColumn>& Columns() { return m_columns; }
    bool ShowsEmptyColumns() const { return m_showEmptyColumns; }
    void SetContentWidth(uint32_t width) { m_contentWidth = width; }
    // For rows and their cells: freed as a whole with the table, never before.
    std::pmr::memory_resource* GetMemory() { return &m_memory; }
    // The column's entry in the usage list, null when no row has a cell for it.
    const ColumnUsage* FindUsage(uint32_t columnId) const;

  private:
    // The index of the column's entry in the usage list; adds the entry when there is none.
    size_t EnterUsage(uint32_t columnId);

    void FindUsedColumns();

    // The sort keys that can tell rows apart. All rows are equal in a key whose column no row fills, and in
    // one whose column an earlier key has compared.
    std::vector<SortKey> GetDecisiveSortKeys() const;

    std::pmr::monotonic_buffer_resource m_memory;  // the first member: the others lie in it
    bool m_showEmptyColumns = false;
    std::vector<ColumnUsage> m_columnUsage;  // in the order in which columns were first seen
    std::vector<CTableColumn> m_columns;
    std::pmr::deque<CTableRow> m_rows{&m_memory};  // in the order of arrival
    // A new table's key matches no cell: rows keep the order of arrival.
    std::vector<SortKey> m_sortKeys{{0, kAscending}};
    std::vector<uint8_t> m_isUsed;  // by column id: 1 or 0; asked for every cell of every row
    std::string m_separator;
    uint32_t m_contentWidth = 0;  // sum of the column widths; 0 after AddRow until they are measured
};

}  // namespace Ostrel::UI::Console
