#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <new>
#include <string_view>
#include <utility>

#include "krvcmd/console/cell_store.h"
#include "krvcmd/console/table_row.h"

namespace Ostrel::UI::Console {

// Collects the cells of one row. A cell for which there is no memory is left out of the row.
class RowBuilder {
  public:
    // The row has room for `cellCount` cells, which `cells` makes.
    RowBuilder(CellStore& cells, std::size_t cellCount, std::pmr::memory_resource* memory)
        : m_cells(cells), m_row(cellCount, memory) {}

    void Number(std::uint32_t columnId, std::int64_t value) {
        Add([&]() -> const CTableItem& { return m_cells.Number(columnId, value); });
    }
    void Capacity(std::uint32_t columnId, std::int64_t bytes) {
        Add([&]() -> const CTableItem& { return m_cells.Capacity(columnId, bytes); });
    }
    void OneBasedNumber(std::uint32_t columnId, std::int32_t zeroBasedNumber) {
        Add([&]() -> const CTableItem& { return m_cells.OneBasedNumber(columnId, zeroBasedNumber); });
    }
    void Percent(std::uint32_t columnId, std::int64_t free, std::int64_t total) {
        Add([&]() -> const CTableItem& { return m_cells.Percent(columnId, free, total); });
    }
    void Text(std::uint32_t columnId, std::string_view text) {
        Add([&]() -> const CTableItem& { return m_cells.Text(columnId, text); });
    }
    // A text that `format` composes.
    template <typename Format>
    void FormattedText(std::uint32_t columnId, Format format) {
        Add([&]() -> const CTableItem& { return m_cells.Text(columnId, format()); });
    }
    void Directory(std::uint32_t columnId, std::string_view path) {
        Add([&]() -> const CTableItem& { return m_cells.Directory(columnId, path); });
    }
    void Word(std::uint32_t columnId, std::string_view word) {
        Add([&]() -> const CTableItem& { return m_cells.Word(columnId, word); });
    }

    CTableRow TakeRow() { return std::move(m_row); }

  private:
    template <typename Make>
    void Add(Make make) {
        try {
            m_row.AddItem(make());
        } catch (const std::bad_alloc&) {
            return;
        }
    }

    CellStore& m_cells;
    CTableRow m_row;
};

}  // namespace Ostrel::UI::Console
