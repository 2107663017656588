#include "krvcmd/console/cell_store.h"

#include <memory>
#include <new>

#include "krvcmd/console/table_dir_item.h"
#include "krvcmd/console/table_int_item.h"
#include "krvcmd/console/table_one_based_int_item.h"
#include "krvcmd/console/table_percent_int_item.h"
#include "krvcmd/console/table_string_item.h"
#include "krvcmd/console/used_percent.h"

namespace Ostrel::UI::Console {

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

const CTableItem& CellStore::Number(std::uint32_t columnId, std::int64_t value) {
    const CTableItem*& last = PlaceOf([&]() -> const CTableItem*& { return m_shared.Last(columnId); });
    if (last == nullptr || last->GetValue() != value) {
        last = &Make<CTableIntItem>(columnId, value, NumberStyle::Plain);
    }
    return *last;
}

const CTableItem& CellStore::Capacity(std::uint32_t columnId, std::int64_t bytes) {
    const CTableItem*& last = PlaceOf([&]() -> const CTableItem*& { return m_shared.Last(columnId); });
    if (last == nullptr || last->GetValue() != bytes) {
        last = &Make<CTableIntItem>(columnId, bytes, NumberStyle::WithUnit);
    }
    return *last;
}

const CTableItem& CellStore::OneBasedNumber(std::uint32_t columnId, std::int32_t zeroBasedNumber) {
    if (!SharedCells::IsShared(zeroBasedNumber))
        return Make<CTableOneBasedIntItem>(columnId, zeroBasedNumber);
    const CTableItem*& shared =
        PlaceOf([&]() -> const CTableItem*& { return m_shared.OfNumber(columnId, zeroBasedNumber); });
    if (shared == nullptr) shared = &Make<CTableOneBasedIntItem>(columnId, zeroBasedNumber);
    return *shared;
}

const CTableItem& CellStore::Percent(std::uint32_t columnId, std::int64_t free, std::int64_t total) {
    const std::int64_t percent = UsedPercent(free, total);
    if (!SharedCells::IsShared(percent)) return Make<CTablePercentIntItem>(columnId, free, total);
    const CTableItem*& shared =
        PlaceOf([&]() -> const CTableItem*& { return m_shared.OfNumber(columnId, percent); });
    if (shared == nullptr) shared = &Make<CTablePercentIntItem>(columnId, free, total);
    return *shared;
}

const CTableItem& CellStore::Text(std::uint32_t columnId, std::string_view text) {
    const CTableItem*& last = PlaceOf([&]() -> const CTableItem*& { return m_shared.Last(columnId); });
    if (last == nullptr || last->GetText() != text) last = &Make<CTableStringItem>(columnId, text);
    return *last;
}

const CTableItem& CellStore::Directory(std::uint32_t columnId, std::string_view path) {
    return Make<CTableDirItem>(columnId, path);
}

const CTableItem& CellStore::Word(std::uint32_t columnId, std::string_view word) {
    const CTableItem*& shared =
        PlaceOf([&]() -> const CTableItem*& { return m_shared.OfWord(columnId, word); });
    if (shared == nullptr) shared = &Make<CTableStringItem>(columnId, word);
    return *shared;
}

}  // namespace Ostrel::UI::Console
