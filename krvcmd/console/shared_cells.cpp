#include "krvcmd/console/shared_cells.h"

namespace Ostrel::UI::Console {

const CTableItem*& SharedCells::OfNumber(std::uint32_t columnId, std::int64_t number) {
    std::vector<const CTableItem*>& numbers = ColumnOf(columnId).numbers;
    const auto index = static_cast<std::size_t>(number);
    if (index >= numbers.size()) numbers.resize(index + 1, nullptr);
    return numbers[index];
}

const CTableItem*& SharedCells::OfWord(std::uint32_t columnId, std::string_view word) {
    std::vector<WordCell>& words = ColumnOf(columnId).words;
    for (WordCell& entry : words) {
        if (entry.word == word.data()) return entry.cell;
    }
    return words.emplace_back(WordCell{word.data(), nullptr}).cell;
}

SharedCells::Column& SharedCells::ColumnOf(std::uint32_t columnId) {
    if (columnId >= m_columns.size()) m_columns.resize(columnId + 1);
    return m_columns[columnId];
}

}  // namespace Ostrel::UI::Console
