#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "krvcmd/console/table_item.h"

namespace Ostrel::UI::Console {

// Which cells of a table have been made for sharing: those of words out of a fixed set and of small numbers,
// and of each column the one that was made last, since rows in succession often show the same.
class SharedCells {
  public:
    // Numbers from 0 to below this are shared; larger ones are too rare to be worth a place.
    static constexpr std::int64_t kNumbers = 1000;

    static bool IsShared(std::int64_t number) { return number >= 0 && number < kNumbers; }

    // The place of a cell, null while it has not been made. Column ids are small numbers; `word` is a
    // constant, told apart from others by its address.
    const CTableItem*& OfNumber(std::uint32_t columnId, std::int64_t number);
    const CTableItem*& OfWord(std::uint32_t columnId, std::string_view word);
    const CTableItem*& Last(std::uint32_t columnId) { return ColumnOf(columnId).last; }

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

    Column& ColumnOf(std::uint32_t columnId);

    std::vector<Column> m_columns;  // by column id
};

}  // namespace Ostrel::UI::Console
