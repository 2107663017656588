#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "krvcmd/console/sort_key.h"
#include "krvcmd/console/table_column.h"
#include "krvcmd/console/table_row.h"

namespace Ostrel::UI::Console {

// What the rows so far have in one column.
struct ColumnUsage {
    std::int32_t maxTextLength;  // of the longest full text
    std::uint32_t columnId;
    std::uint32_t count;  // cells seen
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
    void SetSortKeys(std::vector<SortKey> sortKeys) { m_sortKeys = std::move(sortKeys); }
    void SetSeparator(std::string_view separator) { m_separator = separator; }
    // Whether columns that no row fills are laid out all the same.
    void SetShowEmptyColumns(bool show) { m_showEmptyColumns = show; }

    const std::string& GetSeparator() const { return m_separator; }
    std::size_t GetColumnCount() const { return m_columns.size(); }
    const std::vector<CTableColumn>& GetColumns() const { return m_columns; }
    std::uint32_t GetContentWidth() const { return m_contentWidth; }
    const std::vector<ColumnUsage>& GetColumnUsage() const { return m_columnUsage; }

    // True also for an index behind the last column.
    bool IsColumnEmpty(std::size_t index) const;

    // Takes the row over; its cells must live as long as the table. A row without cells, and any row
    // while there are no columns, is ignored.
    void AddRow(CTableRow row);

    // The rows as they are to be shown: in the order of the sort keys, rows that are equal in all of
    // them in the order in which they were added.
    std::vector<const CTableRow*> GetRowsInOrder() const;

  protected:
    std::vector<CTableColumn>& Columns() { return m_columns; }
    bool ShowsEmptyColumns() const { return m_showEmptyColumns; }
    void SetContentWidth(std::uint32_t width) { m_contentWidth = width; }
    // Where rows and their cells may lie: given back as a whole with the table, never before.
    std::pmr::memory_resource* GetMemory() { return &m_memory; }
    // The column's entry in the usage list, null when no row has a cell for it.
    const ColumnUsage* FindUsage(std::uint32_t columnId) const;

  private:
    // The index of the column's entry in the usage list, which is made if there is none.
    std::size_t EnterUsage(std::uint32_t columnId);

    // The sort keys that can tell rows apart: a key whose column no row fills, or whose column an earlier key
    // has already compared, finds all rows equal.
    std::vector<SortKey> GetDecisiveSortKeys() const;

    std::pmr::monotonic_buffer_resource m_memory;  // the first member: the others lie in it
    bool m_showEmptyColumns = false;
    std::vector<ColumnUsage> m_columnUsage;  // in the order in which columns were first seen
    std::vector<CTableColumn> m_columns;
    std::pmr::deque<CTableRow> m_rows{&m_memory};  // in the order in which they were added
    // A new table's key matches no cell: rows keep the order in which they were added.
    std::vector<SortKey> m_sortKeys{{0, kAscending}};
    std::string m_separator;
    std::uint32_t m_contentWidth = 0;  // sum of the column widths that the last Print measured
};

}  // namespace Ostrel::UI::Console
