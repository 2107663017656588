#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "krvcmd/console/table/table_item.h"

namespace Ostrel::UI::Console {

// Makes the cells of a table and keeps them alive. The cells of one row lie side by side. Words,
// percentages and the small numbers of magazines, drives and slots repeat in many rows: one cell serves all
// of them. A capacity or a name reuses one of the last eight different cells of its column. Other numbers
// and texts share the last cell of their column while they repeat it. Every function throws std::bad_alloc
// when there is no memory for the cell; a cell that just cannot be shared is made all the same.
class CellStore {
  public:
    // Cells lie in `memory`, which must outlive the store.
    explicit CellStore(std::pmr::memory_resource* memory) : m_memory(memory) {}
    ~CellStore();
    CellStore(const CellStore&) = delete;
    CellStore& operator=(const CellStore&) = delete;

    // Column ids are small numbers.
    const CTableItem& Number(uint32_t columnId, int64_t value);
    const CTableItem& Capacity(uint32_t columnId, int64_t bytes);
    const CTableItem& OneBasedNumber(uint32_t columnId, int32_t zeroBasedNumber);
    const CTableItem& Percent(uint32_t columnId, int64_t free, int64_t total);
    const CTableItem& Text(uint32_t columnId, std::string_view text);
    // A text of which a column has few.
    const CTableItem& Name(uint32_t columnId, std::string_view name);
    const CTableItem& Directory(uint32_t columnId, std::string_view path);
    // `word` is a constant, told apart from others by its address.
    const CTableItem& Word(uint32_t columnId, std::string_view word);

  private:
    struct SharedWord {
        const char* word;
        const CTableItem* cell;
    };
    // Some different cells; a new one takes the place of the oldest.
    struct RecentCells {
        std::array<const CTableItem*, 8> cells{};
        size_t oldest = 0;
    };
    // The cells of one column that are shared, null while they have not been made.
    struct SharedCells {
        std::vector<const CTableItem*> numbers;  // by number
        std::vector<SharedWord> words;
        RecentCells recent;
        const CTableItem* last = nullptr;
    };

    template <typename Cell, typename... Arguments>
    const CTableItem& Make(Arguments... arguments);

    SharedCells& SharedCellsOf(uint32_t columnId);

    // Where the pointer to a shared cell is kept; without memory for the entry, a scratch pointer, so that
    // the cell is not shared.
    const CTableItem*& PlaceOfLast(uint32_t columnId);
    // The place of the recent cell that `isSame` accepts, else an empty one.
    template <typename IsSame>
    const CTableItem*& PlaceOfRecent(uint32_t columnId, IsSame isSame);
    const CTableItem*& PlaceOfNumber(uint32_t columnId, int64_t number);
    const CTableItem*& PlaceOfWord(uint32_t columnId, std::string_view word);
    const CTableItem*& PlaceOfUnshared();

    std::pmr::memory_resource* m_memory;
    // The cells whose destructors have something to do; all others go with the memory that they lie in.
    std::vector<const CTableItem*> m_cellsOnHeap;
    std::vector<SharedCells> m_sharedCells;  // by column id
    const CTableItem* m_unshared = nullptr;
};

}  // namespace Ostrel::UI::Console
