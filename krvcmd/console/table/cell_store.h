#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "krvcmd/console/table/table_item.h"

namespace Ostrel::UI::Console {

// Which cells of a table have been made for sharing: those of words out of a fixed set and of small numbers,
// and of each column the one that was made last, since rows in succession often show the same.
class SharedCells {
  public:
    // Numbers from 0 to below this are shared; larger ones are too rare to be worth a place.
    static constexpr int64_t kNumbers = 1000;

    static bool IsShared(int64_t number) { return number >= 0 && number < kNumbers; }

    // The place of a cell, null while it has not been made. Column ids are small numbers; `word` is a
    // constant, told apart from others by its address.
    const CTableItem*& OfNumber(uint32_t columnId, int64_t number);
    const CTableItem*& OfWord(uint32_t columnId, std::string_view word);
    const CTableItem*& Last(uint32_t columnId) { return ColumnOf(columnId).last; }

  private:
    struct WordCell {
        const char* word;
        const CTableItem* cell;
    };
    struct Column {
        std::vector<const CTableItem*> numbers;
        std::vector<WordCell> words;
        const CTableItem* last = nullptr;
    };

    Column& ColumnOf(uint32_t columnId);

    std::vector<Column> m_columns;  // by column id
};

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

    const CTableItem& Number(uint32_t columnId, int64_t value);
    const CTableItem& Capacity(uint32_t columnId, int64_t bytes);
    const CTableItem& OneBasedNumber(uint32_t columnId, int32_t zeroBasedNumber);
    const CTableItem& Percent(uint32_t columnId, int64_t free, int64_t total);
    const CTableItem& Text(uint32_t columnId, std::string_view text);
    const CTableItem& Directory(uint32_t columnId, std::string_view path);
    // `word` is a constant.
    const CTableItem& Word(uint32_t columnId, std::string_view word);

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
