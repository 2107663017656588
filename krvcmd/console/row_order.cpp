#include "krvcmd/console/row_order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Ostrel::UI::Console {

namespace {

// A row on its way to its place, with its cell for the key that is being looked at.
struct RowToOrder {
    const CTableRow* row;
    const CTableItem* cell;
};

std::int32_t CompareCells(const CTableItem* left, const CTableItem* right) {
    if (left == right) return 0;
    if (left == nullptr) return -1;
    if (right == nullptr) return 1;
    return left->Compare(*right);
}

// Orders by the first key, then every run of rows that are equal in it by the other keys.
void OrderByKeys(std::span<RowToOrder> rows, std::span<const SortKey> keys) {
    if (keys.empty() || rows.size() < 2) return;
    const SortKey& key = keys.front();
    for (RowToOrder& row : rows)
        row.cell = row.row->FindItem(key.columnId);
    std::stable_sort(rows.begin(), rows.end(), [&key](const RowToOrder& left, const RowToOrder& right) {
        return CompareCells(left.cell, right.cell) == key.direction;
    });

    std::size_t begin = 0;
    for (std::size_t end = 1; end <= rows.size(); ++end) {
        if (end < rows.size() && CompareCells(rows[begin].cell, rows[end].cell) == 0) continue;
        OrderByKeys(rows.subspan(begin, end - begin), keys.subspan(1));
        begin = end;
    }
}

}  // namespace

void OrderRows(std::vector<const CTableRow*>& rows, std::span<const SortKey> keys) {
    std::vector<RowToOrder> rowsToOrder;
    rowsToOrder.reserve(rows.size());
    for (const CTableRow* row : rows)
        rowsToOrder.push_back({row, nullptr});
    OrderByKeys(rowsToOrder, keys);
    std::transform(rowsToOrder.begin(), rowsToOrder.end(), rows.begin(),
                   [](const RowToOrder& row) { return row.row; });
}

}  // namespace Ostrel::UI::Console
