#include "krvcmd/console/table/cell_store.h"

#include <cstddef>
#include <memory>
#include <new>

#include "krvcmd/console/text/numbers.h"

namespace Ostrel::UI::Console {
namespace {

// Larger numbers are too rare to be worth a place.
bool IsShared(int64_t number) {
    constexpr int64_t kSharedNumbers = 1000;
    return number >= 0 && number < kSharedNumbers;
}

// The text of a cell that was made from one.
std::string_view TextOf(const CTableItem& cell) {
    return static_cast<const CTableStringItem&>(cell).View();
}

}  // namespace

inline CellStore::SharedCells& CellStore::SharedCellsOf(uint32_t columnId) {
    if (columnId >= m_sharedCells.size()) m_sharedCells.resize(columnId + 1);
    return m_sharedCells[columnId];
}

CellStore::~CellStore() {
    for (const CTableItem* cell : m_cellsOnHeap)
        std::destroy_at(cell);
}

const CTableItem& CellStore::Number(uint32_t columnId, int64_t value) {
    const CTableItem*& last = PlaceOfLast(columnId);
    if (last == nullptr || last->GetValue() != value)
        last = &Make<CTableIntItem>(columnId, value, /*withUnit=*/false);
    return *last;
}

const CTableItem& CellStore::Capacity(uint32_t columnId, int64_t bytes) {
    const CTableItem*& recent =
        PlaceOfRecent(columnId, [bytes](const CTableItem& capacity) { return capacity.GetValue() == bytes; });
    if (recent == nullptr) recent = &Make<CTableIntItem>(columnId, bytes, /*withUnit=*/true);
    return *recent;
}

const CTableItem& CellStore::OneBasedNumber(uint32_t columnId, int32_t zeroBasedNumber) {
    if (!IsShared(zeroBasedNumber)) return Make<CTableOneBasedIntItem>(columnId, zeroBasedNumber);
    const CTableItem*& shared = PlaceOfNumber(columnId, zeroBasedNumber);
    if (shared == nullptr) shared = &Make<CTableOneBasedIntItem>(columnId, zeroBasedNumber);
    return *shared;
}

const CTableItem& CellStore::Percent(uint32_t columnId, int64_t free, int64_t total) {
    const int64_t percent = UsedPercent(free, total);
    if (!IsShared(percent)) return Make<CTablePercentIntItem>(columnId, free, total);
    const CTableItem*& shared = PlaceOfNumber(columnId, percent);
    if (shared == nullptr) shared = &Make<CTablePercentIntItem>(columnId, free, total);
    return *shared;
}

const CTableItem& CellStore::Text(uint32_t columnId, std::string_view text) {
    const CTableItem*& last = PlaceOfLast(columnId);
    if (last == nullptr || TextOf(*last) != text) last = &Make<CTableStringItem>(columnId, text);
    return *last;
}

const CTableItem& CellStore::Name(uint32_t columnId, std::string_view name) {
    const CTableItem*& recent =
        PlaceOfRecent(columnId, [name](const CTableItem& text) { return TextOf(text) == name; });
    if (recent == nullptr) recent = &Make<CTableStringItem>(columnId, name);
    return *recent;
}

const CTableItem& CellStore::Directory(uint32_t columnId, std::string_view path) {
    return Make<CTableDirItem>(columnId, path);
}

const CTableItem& CellStore::Word(uint32_t columnId, std::string_view word) {
    const CTableItem*& shared = PlaceOfWord(columnId, word);
    if (shared == nullptr) shared = &Make<CTableStringItem>(columnId, word);
    return *shared;
}

template <typename Cell, typename... Arguments>
const CTableItem& CellStore::Make(Arguments... arguments) {
    const CTableItem* cell = new (m_memory->allocate(sizeof(Cell), alignof(Cell))) Cell(arguments...);
    if (!cell->OwnsHeapMemory()) return *cell;
    try {
        m_cellsOnHeap.push_back(cell);
    } catch (const std::bad_alloc&) {
        std::destroy_at(cell);
        throw;
    }
    return *cell;
}

const CTableItem*& CellStore::PlaceOfLast(uint32_t columnId) {
    try {
        return SharedCellsOf(columnId).last;
    } catch (const std::bad_alloc&) {
        return PlaceOfUnshared();
    }
}

template <typename IsSame>
const CTableItem*& CellStore::PlaceOfRecent(uint32_t columnId, IsSame isSame) {
    try {
        RecentCells& recent = SharedCellsOf(columnId).recent;
        for (const CTableItem*& cell : recent.cells) {
            if (cell != nullptr && isSame(*cell)) return cell;
        }
        const CTableItem*& place = recent.cells[recent.oldest];
        recent.oldest = (recent.oldest + 1) % recent.cells.size();
        place = nullptr;
        return place;
    } catch (const std::bad_alloc&) {
        return PlaceOfUnshared();
    }
}

const CTableItem*& CellStore::PlaceOfNumber(uint32_t columnId, int64_t number) {
    try {
        std::vector<const CTableItem*>& numbers = SharedCellsOf(columnId).numbers;
        const auto index = static_cast<size_t>(number);
        if (index >= numbers.size()) numbers.resize(index + 1, nullptr);
        return numbers[index];
    } catch (const std::bad_alloc&) {
        return PlaceOfUnshared();
    }
}

const CTableItem*& CellStore::PlaceOfWord(uint32_t columnId, std::string_view word) {
    try {
        std::vector<SharedWord>& words = SharedCellsOf(columnId).words;
        for (SharedWord& shared : words) {
            if (shared.word == word.data()) return shared.cell;
        }
        return words.emplace_back(SharedWord{word.data(), nullptr}).cell;
    } catch (const std::bad_alloc&) {
        return PlaceOfUnshared();
    }
}

const CTableItem*& CellStore::PlaceOfUnshared() {
    m_unshared = nullptr;
    return m_unshared;
}

}  // namespace Ostrel::UI::Console
