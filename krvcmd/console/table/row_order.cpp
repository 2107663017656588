#include "krvcmd/console/table/row_order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Ostrel::UI::Console {
namespace {

constexpr size_t kBeginningSize = sizeof(uint64_t);

// A text's first bytes as a number that orders as they do; a shorter text ends in zeros.
uint64_t BeginningOf(std::string_view text) {
    uint64_t beginning = 0;
    for (size_t i = 0; i < kBeginningSize; ++i) {
        const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
        beginning = beginning << 8U | byte;
    }
    return beginning;
}

// A row on its way to its place, with what it is ordered by for the key that is being looked at. Texts lie
// scattered with their cells; the beginning at hand decides between most of them.
struct RowToOrder {
    uint64_t beginning;
    NumberedText value;
    uint32_t index;  // in the order of arrival
    bool hasCell;
};

int32_t Compare(const RowToOrder& left, const RowToOrder& right) {
    if (left.hasCell != right.hasCell) return left.hasCell ? 1 : -1;
    if (left.beginning != right.beginning) return left.beginning < right.beginning ? -1 : 1;
    const size_t size = left.value.text.size();
    if (size <= kBeginningSize && size == right.value.text.size()) {
        return CompareNumbers(left.value, right.value);
    }
    return CompareNumberedTexts(left.value, right.value);
}

class RowOrder {
  public:
    RowOrder(std::span<const CTableRow* const> rows, std::span<const SortKey> keys) : m_keys(keys) {
        // Looked up for all keys at once, while a row is at hand.
        m_keyCells.reserve(rows.size() * keys.size());
        for (const CTableRow* row : rows) {
            for (const SortKey& key : keys)
                m_keyCells.push_back(row->FindItem(key.columnId));
        }
        m_rows.resize(rows.size());
        for (uint32_t index = 0; index < m_rows.size(); ++index)
            m_rows[index].index = index;
        OrderFrom(0, m_rows);
    }

    std::span<const RowToOrder> GetRows() const { return m_rows; }

  private:
    // Orders rows that are equal in all keys before the one at `keyIndex`: by that key, then every run of
    // rows that are equal in it by the next keys.
    void OrderFrom(size_t keyIndex, std::span<RowToOrder> rows) {
        if (keyIndex == m_keys.size() || rows.size() < 2) return;
        for (RowToOrder& row : rows)
            LookAtKey(keyIndex, row);
        const auto isInFront = [direction = m_keys[keyIndex].direction](const RowToOrder& left,
                                                                        const RowToOrder& right) {
            return Compare(left, right) == direction;
        };
        // Rows often arrive in order, or all have the same value.
        if (!std::is_sorted(rows.begin(), rows.end(), isInFront)) {
            std::stable_sort(rows.begin(), rows.end(), isInFront);
        }
        size_t begin = 0;
        for (size_t end = 1; end <= rows.size(); ++end) {
            if (end < rows.size() && Compare(rows[begin], rows[end]) == 0) continue;
            OrderFrom(keyIndex + 1, rows.subspan(begin, end - begin));
            begin = end;
        }
    }

    void LookAtKey(size_t keyIndex, RowToOrder& row) const {
        const CTableItem* cell = m_keyCells[row.index * m_keys.size() + keyIndex];
        row.hasCell = cell != nullptr;
        row.value = cell == nullptr ? NumberedText{} : cell->GetOrderValue();
        row.beginning = BeginningOf(row.value.text);
    }

    std::span<const SortKey> m_keys;
    std::vector<const CTableItem*> m_keyCells;  // of each row in the order of arrival, one for each key
    std::vector<RowToOrder> m_rows;
};

}  // namespace

std::vector<const CTableRow*> OrderRows(std::span<const CTableRow* const> rows,
                                        std::span<const SortKey> keys) {
    const RowOrder order(rows, keys);
    std::vector<const CTableRow*> ordered;
    ordered.reserve(rows.size());
    for (const RowToOrder& row : order.GetRows())
        ordered.push_back(rows[row.index]);
    return ordered;
}

}  // namespace Ostrel::UI::Console
