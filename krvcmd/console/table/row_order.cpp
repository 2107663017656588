#include "krvcmd/console/table/row_order.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <numeric>
#include <string_view>
#include <utility>

#include "krvcmd/console/table/row_prefetch.h"
#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {
namespace {

// The first bytes of a text as a number that orders as they do; a shorter text is padded with zeros.
uint64_t FirstBytesOf(std::string_view text) {
    std::array<char, sizeof(uint64_t)> bytes{};
    text.copy(bytes.data(), bytes.size());
    const auto number = std::bit_cast<uint64_t>(bytes);
    return std::endian::native == std::endian::little ? __builtin_bswap64(number) : number;
}

// A number without a sign that orders as `number` does.
uint64_t WithoutSign(int64_t number) {
    return static_cast<uint64_t>(number) ^ (uint64_t{1} << 63);
}

// What a row is sorted by. A row without the cell has a text that is null.
bool HasCell(const NumberedText& value) {
    return value.text.data() != nullptr;
}

int32_t Compare(const NumberedText& left, const NumberedText& right) {
    if (HasCell(left) != HasCell(right)) return HasCell(left) ? 1 : -1;
    return CompareNumberedTexts(left, right);
}

// A row while it is sorted.
struct RowToSort {
    uint64_t number;  // of its value
    uint32_t index;   // in the order of arrival
    uint32_t value;   // the place of its value
};

// Rows in succession, from `begin` to before `end`.
struct Run {
    size_t begin;
    size_t end;
};

// Sorts rows by their numbers; rows with the same number, which are in the order of arrival, stay in it.
// `room` is for as many rows.
void SortByNumber(std::span<RowToSort> rows, std::span<RowToSort> room) {
    // Rows often arrive in order, or all have the same number.
    if (std::ranges::is_sorted(rows, {}, &RowToSort::number)) return;
    constexpr size_t kFew = 256;
    if (rows.size() < kFew) {
        std::ranges::sort(rows, [](const RowToSort& left, const RowToSort& right) {
            return left.number != right.number ? left.number < right.number : left.index < right.index;
        });
        return;
    }
    // By one byte after the other, the highest one last. No row is compared with another: comparisons of
    // rows in no order cost most of the time, because no processor foresees their results.
    constexpr unsigned kBits = 8;
    for (unsigned shift = 0; shift < std::numeric_limits<uint64_t>::digits; shift += kBits) {
        const auto byteOf = [shift](const RowToSort& row) { return (row.number >> shift) & 0xFF; };
        std::array<uint32_t, size_t{1} << kBits> counts{};
        for (const RowToSort& row : rows)
            ++counts[byteOf(row)];
        if (counts[byteOf(rows.front())] == rows.size()) continue;
        std::exclusive_scan(counts.begin(), counts.end(), counts.begin(), uint32_t{0});
        for (const RowToSort& row : rows)
            room[counts[byteOf(row)]++] = row;
        std::ranges::copy(room.first(rows.size()), rows.begin());
    }
}

// Sorts by one key after the other. Rows that are equal in all keys so far form runs, which the next key
// sorts.
class RowSorter {
  public:
    RowSorter(std::span<const CTableRow* const> rows, std::span<const SortKey> keys)
        : m_arrived(rows), m_values(rows.size()), m_rows(rows.size()), m_room(rows.size()) {
        for (uint32_t index = 0; index < m_rows.size(); ++index)
            m_rows[index].index = index;
        m_runs.push_back({0, m_rows.size()});
        for (const SortKey& key : keys)
            SortBy(key);
    }

    std::span<const RowToSort> GetRows() const { return m_rows; }

  private:
    void SortBy(const SortKey& key) {
        LoadValues(key.columnId);
        SortRuns([&](std::span<RowToSort> rows) {
            SortByNumberOf(rows, key.direction,
                           [](const NumberedText& value) { return FirstBytesOf(value.text); });
        });
        SortRuns([&](std::span<RowToSort> rows) {
            if (HaveOneText(rows)) {
                SortByNumberOf(rows, key.direction,
                               [](const NumberedText& value) { return WithoutSign(value.number); });
            } else {
                SortByValue(rows, key.direction);
            }
        });
    }

    // Loads the values of all rows in runs.
    void LoadValues(uint32_t columnId) {
        CellFinder finder(columnId);
        for (const Run& run : m_runs) {
            for (size_t position = run.begin; position < run.end; ++position) {
                // Also beyond the run: most often the next run begins there.
                if (position + 2 * kPrefetchStep < m_rows.size())
                    PrefetchRow(RowAt(position + 2 * kPrefetchStep));
                if (position + kPrefetchStep < m_rows.size())
                    PrefetchCellList(RowAt(position + kPrefetchStep));
                const CTableItem* cell = finder.FindIn(RowAt(position));
                m_rows[position].value = static_cast<uint32_t>(position);
                NumberedText& value = m_values[position];
                value = cell == nullptr ? NumberedText{} : cell->GetSortValue();
                if (cell != nullptr && !HasCell(value)) value.text = "";
            }
        }
    }

    const CTableRow& RowAt(size_t position) const { return *m_arrived[m_rows[position].index]; }

    // Sorts every run; `sort` gives equal rows the same number. What is left are the runs of two or more
    // equal rows.
    template <typename SortRun>
    void SortRuns(SortRun sort) {
        std::vector<Run> left;
        for (const Run& run : m_runs) {
            sort(std::span(m_rows).subspan(run.begin, run.end - run.begin));
            size_t begin = run.begin;
            for (size_t end = begin + 1; end <= run.end; ++end) {
                if (end < run.end && m_rows[begin].number == m_rows[end].number) continue;
                if (end - begin >= 2) left.push_back({begin, end});
                begin = end;
            }
        }
        m_runs = std::move(left);
    }

    // Sorts by a number of each row's value.
    template <typename NumberOf>
    void SortByNumberOf(std::span<RowToSort> rows, int32_t direction, NumberOf numberOf) {
        const uint64_t inverted = direction == kAscending ? 0 : ~uint64_t{0};
        for (RowToSort& row : rows)
            row.number = numberOf(ValueOf(row)) ^ inverted;
        SortByNumber(rows, m_room);
    }

    // Sorts by the whole values.
    void SortByValue(std::span<RowToSort> rows, int32_t direction) {
        std::ranges::sort(rows, [this, direction](const RowToSort& left, const RowToSort& right) {
            const int32_t order = Compare(ValueOf(left), ValueOf(right));
            return order != 0 ? order == direction : left.index < right.index;
        });
        rows.front().number = 0;
        for (size_t position = 1; position < rows.size(); ++position) {
            const bool isSame = Compare(ValueOf(rows[position - 1]), ValueOf(rows[position])) == 0;
            rows[position].number = rows[position - 1].number + (isSame ? 0 : 1);
        }
    }

    // Of rows whose texts have the same first bytes.
    bool HaveOneText(std::span<const RowToSort> rows) const {
        const NumberedText& first = ValueOf(rows.front());
        const bool isShort = first.text.size() <= sizeof(uint64_t);
        return std::ranges::all_of(rows, [&](const RowToSort& row) {
            const NumberedText& value = ValueOf(row);
            return HasCell(value) == HasCell(first) && value.text.size() == first.text.size() &&
                   (isShort || value.text == first.text);
        });
    }

    const NumberedText& ValueOf(const RowToSort& row) const { return m_values[row.value]; }

    std::span<const CTableRow* const> m_arrived;
    std::vector<NumberedText> m_values;  // for the current key
    std::vector<RowToSort> m_rows;
    std::vector<RowToSort> m_room;
    std::vector<Run> m_runs;
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
