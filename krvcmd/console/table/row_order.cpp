#include "krvcmd/console/table/row_order.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string_view>

#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {
namespace {

constexpr size_t kFirstBytes = sizeof(uint64_t);

// The first bytes of a text as a number that orders as they do; a shorter text is padded with zeros.
uint64_t FirstBytesOf(std::string_view text) {
    std::array<char, kFirstBytes> bytes{};
    text.copy(bytes.data(), bytes.size());
    const auto number = std::bit_cast<uint64_t>(bytes);
    return std::endian::native == std::endian::little ? __builtin_bswap64(number) : number;
}

// A row while it is sorted, with its value for the current key. The texts lie scattered in memory; the first
// bytes at hand tell most of them apart.
struct RowToSort {
    uint64_t firstBytes;
    const char* text;  // null: the row has no cell
    int64_t number;
    uint32_t textSize;
    uint32_t index;  // in the order of arrival

    bool HasCell() const { return text != nullptr; }
    NumberedText GetValue() const { return {{text, textSize}, number}; }
};

int32_t Compare(const RowToSort& left, const RowToSort& right) {
    if (left.HasCell() != right.HasCell()) return left.HasCell() ? 1 : -1;
    if (left.firstBytes != right.firstBytes) return left.firstBytes < right.firstBytes ? -1 : 1;
    if (left.textSize <= kFirstBytes && left.textSize == right.textSize) {
        if (left.number == right.number) return 0;
        return left.number < right.number ? -1 : 1;
    }
    return CompareNumberedTexts(left.GetValue(), right.GetValue());
}

class RowSorter {
  public:
    RowSorter(std::span<const CTableRow* const> rows, std::span<const SortKey> keys)
        : m_arrived(rows), m_keys(keys), m_rows(rows.size()) {
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
        CellFinder finder(m_keys[keyIndex].columnId);
        for (RowToSort& row : rows)
            LoadKey(finder.FindIn(*m_arrived[row.index]), row);
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

    static void LoadKey(const CTableItem* cell, RowToSort& row) {
        const NumberedText value = cell == nullptr ? NumberedText{} : cell->GetSortValue();
        row.firstBytes = FirstBytesOf(value.text);
        row.text = value.text.data();
        if (cell != nullptr && row.text == nullptr) row.text = "";
        row.textSize = static_cast<uint32_t>(value.text.size());
        row.number = value.number;
    }

    std::span<const CTableRow* const> m_arrived;
    std::span<const SortKey> m_keys;
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
