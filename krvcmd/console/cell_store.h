#pragma once

#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "krvcmd/console/shared_cells.h"
#include "krvcmd/console/table_item.h"

namespace Ostrel::UI::Console {

// Makes the cells of a table and keeps them alive. The cells of one row lie side by side. Cells that look the
// same in many rows (words out of a fixed set, per cents, numbers of magazines and slots) are made once and
// shared; other numbers and texts are shared by rows in succession that show the same. Every function throws
// std::bad_alloc when there is no memory for the cell; one that merely cannot be shared is made all the same.
class CellStore {
  public:
    // Cells lie in `memory`, which must outlive the store.
    explicit CellStore(std::pmr::memory_resource* memory) : m_memory(memory) {}
    ~CellStore();
    CellStore(const CellStore&) = delete;
    CellStore& operator=(const CellStore&) = delete;

    const CTableItem& Number(std::uint32_t columnId, std::int64_t value);
    const CTableItem& Capacity(std::uint32_t columnId, std::int64_t bytes);
    const CTableItem& OneBasedNumber(std::uint32_t columnId, std::int32_t zeroBasedNumber);
    const CTableItem& Percent(std::uint32_t columnId, std::int64_t free, std::int64_t total);
    const CTableItem& Text(std::uint32_t columnId, std::string_view text);
    const CTableItem& Directory(std::uint32_t columnId, std::string_view path);
    // `word` is a constant.
    const CTableItem& Word(std::uint32_t columnId, std::string_view word);

  private:
    template <typename Cell, typename... Arguments>
    const CTableItem& Make(Arguments... arguments);

    // The place that `find` finds for a shared cell; without memory for places, one that no other cell uses.
    template <typename Find>
    const CTableItem*& PlaceOf(Find find);

    std::pmr::memory_resource* m_memory;
    // The cells whose destructors have something to do; all others go with the memory that they lie in.
    std::vector<const CTableItem*> m_cellsWithMemory;
    SharedCells m_shared;
    const CTableItem* m_unshared = nullptr;
};

}  // namespace Ostrel::UI::Console
