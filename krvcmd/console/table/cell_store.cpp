#include "krvcmd/console/table/cell_store.h"

#include <memory>
#include <new>

#include "krvcmd/console/table/table_item.h"
#include "krvcmd/console/text/numbers.h"

namespace Ostrel::UI::Console {

const CTableItem*& SharedCells::OfNumber(uint32_t columnId, int64_t number) {
    std::vector<const CTableItem*>& numbers = ColumnOf(columnId).numbers;
    const auto index = static_cast<size_t>(number);
    if (index >= numbers.size()) numbers.resize(index + 1, nullptr);
    return numbers[index];
}

const CTableItem*& SharedCells::OfWord(uint32_t columnId, std::string_view word) {
    std::vector<WordCell>& words = ColumnOf(columnId).words;
    for (WordCell& entry : words) {
        if (entry.word == word.data()) return entry.cell;
    }
    return words.emplace_back(WordCell{word.data(), nullptr}).cell;
}

SharedCells::Column& SharedCells::ColumnOf(uint32_t columnId) {
    if (columnId >= m_columns.size()) m_columns.resize(columnId + 1);
    return m_columns[columnId];
}

CellStore::~CellStore() {
    for (const CTableItem* cell : m_cellsWithMemory)
        std::destroy_at(cell);
}

template <typename Cell, typename... Arguments>
const CTableItem& CellStore::Make(Arguments... arguments) {
    const CTableItem* cell = new (m_memory->allocate(sizeof(Cell), alignof(Cell))) Cell(arguments...);
    if (!cell->HoldsMemory()) return *cell;
    try {
        m_cellsWithMemory.push_back(cell);
    } catch (const std::bad_alloc&) {
        std::destroy_at(cell);
        throw;
    }
    return *cell;
}

template <typename Find>
const CTableItem*& CellStore::PlaceOf(Find find) {
    try {
        return find();
    } catch (const std::bad_alloc&) {
        m_unshared = nullptr;
        return m_unshared;
    }
}

const CTableItem& CellStore::Number(uint32_t columnId, int64_t value) {
    const CTableItem*& last = PlaceOf([&]() -> const CTableItem*& { return m_shared.Last(columnId); });
    if (last == nullptr || last->GetValue() != value) {
        last = &Make<CTableIntItem>(columnId, value, NumberStyle::Plain);
    }
    return *last;
}

const CTableItem& CellStore::Capacity(uint32_t columnId, int64_t bytes) {
    const CTableItem*& last = PlaceOf([&]() -> const CTableItem*& { return m_shared.Last(columnId); });
    if (last == nullptr || last->GetValue() != bytes) {
        last = &Make<CTableIntItem>(columnId, bytes, NumberStyle::WithUnit);
    }
    return *last;
}

const CTableItem& CellStore::OneBasedNumber(uint32_t columnId, int32_t zeroBasedNumber) {
    if (!SharedCells::IsShared(zeroBasedNumber))
        return Make<CTableOneBasedIntItem>(columnId, zeroBasedNumber);
    const CTableItem*& shared =
        PlaceOf([&]() -> const CTableItem*& { return m_shared.OfNumber(columnId, zeroBasedNumber); });
    if (shared == nullptr) shared = &Make<CTableOneBasedIntItem>(columnId, zeroBasedNumber);
    return *shared;
}

const CTableItem& CellStore::Percent(uint32_t columnId, int64_t free, int64_t total) {
    const int64_t percent = UsedPercent(free, total);
    if (!SharedCells::IsShared(percent)) return Make<CTablePercentIntItem>(columnId, free, total);
    const CTableItem*& shared =
        PlaceOf([&]() -> const CTableItem*& { return m_shared.OfNumber(columnId, percent); });
    if (shared == nullptr) shared = &Make<CTablePercentIntItem>(columnId, free, total);
    return *shared;
}

const CTableItem& CellStore::Text(uint32_t columnId, std::string_view text) {
    const CTableItem*& last = PlaceOf([&]() -> const CTableItem*& { return m_shared.Last(columnId); });
    if (last == nullptr || last->GetText() != text) last = &Make<CTableStringItem>(columnId, text);
    return *last;
}

const CTableItem& CellStore::Directory(uint32_t columnId, std::string_view path) {
    return Make<CTableDirItem>(columnId, path);
}

const CTableItem& CellStore::Word(uint32_t columnId, std::string_view word) {
    const CTableItem*& shared =
        PlaceOf([&]() -> const CTableItem*& { return m_shared.OfWord(columnId, word); });
    if (shared == nullptr) shared = &Make<CTableStringItem>(columnId, word);
    return *shared;
}

}  // namespace Ostrel::UI::Console
