#include "krvcmd/console/table/row_order.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {
namespace {

constexpr size_t kFirstBytes = sizeof(uint64_t);

// The first bytes of a text as a number that orders as they do; a shorter text is padded with zeros.
uint64_t FirstBytesOf(std::string_view text) {
    uint64_t bytes = 0;
    for (size_t i = 0; i < kFirstBytes; ++i) {
        const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
        bytes = bytes << 8U | byte;
    }
    return bytes;
}

// A row while it is sorted, with its value for the current key. The texts lie scattered in memory; the first
// bytes at hand tell most of them apart.
struct RowToSort {
    uint64_t firstBytes;
    NumberedText value;
    uint32_t index;  // in the order of arrival
    bool hasCell;
};

int32_t Compare(const RowToSort& left, const RowToSort& right) {
    if (left.hasCell != right.hasCell) return left.hasCell ? 1 : -1;
    if (left.firstBytes != right.firstBytes) return left.firstBytes < right.firstBytes ? -1 : 1;
    const size_t size = left.value.text.size();
    if (size <= kFirstBytes && size == right.value.text.size()) {
        return CompareNumbers(left.value, right.value);
    }
    return CompareNumberedTexts(left.value, right.value);
}

class RowSorter {
  public:
    RowSorter(std::span<const CTableRow* const> rows, std::span<const SortKey> keys)
        : m_keys(keys), m_rows(rows.size()) {
        // Looked up for all keys at once, while the row is in the cache.
        m_keyCells.reserve(rows.size() * keys.size());
        for (const CTableRow* row : rows) {
            for (const SortKey& key : keys)
                m_keyCells.push_back(row->FindItem(key.columnId));
        }
        for (uint32_t index = 0; index < m_rows.size(); ++index)
            m_rows[index].index = index;
        SortFrom(0, m_rows);
    }

    std::span<const RowToSort> GetRows() const { return m_rows; }

  private:
    // Sorts rows that are equal in all keys before the one at `keyIndex`: by that key, then every run of rows
    // that are equal in it by the following keys.
    void SortFrom(size_t keyIndex, std::span<RowToSort> rows) {
        if (keyIndex == m_keys.size() || rows.size() < 2) return;
        for (RowToSort& row : rows)
            LoadKey(keyIndex, row);
        const auto isInFront = [direction = m_keys[keyIndex].direction](const RowToSort& left,
                                                                        const RowToSort& right) {
            return Compare(left, right) == direction;
        };
        // Rows often arrive in order, or all have the same value.
        if (!std::ranges::is_sorted(rows, isInFront)) std::ranges::stable_sort(rows, isInFront);
        size_t begin = 0;
        for (size_t end = 1; end <= rows.size(); ++end) {
            if (end < rows.size() && Compare(rows[begin], rows[end]) == 0) continue;
            SortFrom(keyIndex + 1, rows.subspan(begin, end - begin));
            begin = end;
        }
    }

    void LoadKey(size_t keyIndex, RowToSort& row) const {
        const CTableItem* cell = m_keyCells[row.index * m_keys.size() + keyIndex];
        row.hasCell = cell != nullptr;
        row.value = cell == nullptr ? NumberedText{} : cell->GetSortValue();
        row.firstBytes = FirstBytesOf(row.value.text);
    }

    std::span<const SortKey> m_keys;
    std::vector<const CTableItem*> m_keyCells;  // of each row in the order of arrival, one for each key
    std::vector<RowToSort> m_rows;
};

}  // namespace

std::vector<const CTableRow*> OrderRows(std::span<const CTableRow* const> rows,
                                        std::span<const SortKey> keys) {
    const RowSorter sorter(rows, keys);
    std::vector<const CTableRow*> ordered;
    ordered.reserve(rows.size());
    for (const RowToSort& row : sorter.GetRows())
        ordered.push_back(rows[row.index]);
    return ordered;
}

}  // namespace Ostrel::UI::Console
