#include "tests/reliability/memory/missing_cells.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace krvcmd::reliability {
namespace {

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::string_view WithoutBlanks(std::string_view cell) {
    const size_t first = cell.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return cell.substr(first, cell.find_last_not_of(' ') - first + 1);
}

// Only the cells that show something, in order: a cell that is blank and one that is not there are the same.
using Row = std::vector<std::string_view>;

Row CellsOf(std::string_view line) {
    Row cells;
    for (const std::string_view cell : Split(line, '|')) {
        const std::string_view text = WithoutBlanks(cell);
        // The line under the header is as long as the header.
        const bool isUnderline = !text.empty() && text.find_first_not_of('-') == std::string_view::npos;
        if (!text.empty()) cells.push_back(isUnderline ? "-" : text);
    }
    return cells;
}

std::vector<Row> RowsOf(std::string_view table) {
    std::vector<Row> rows;
    for (const std::string_view line : Split(table, '\n'))
        rows.push_back(CellsOf(line));
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool LacksOneOf(const Row& shown, const Row& whole) {
    if (shown.size() + 1 != whole.size()) return false;
    const auto [missing, other] = std::mismatch(whole.begin(), whole.end(), shown.begin(), shown.end());
    return std::equal(missing + 1, whole.end(), other, shown.end());
}

}  // namespace

bool HasAsManyLines(std::string_view shown, std::string_view whole) {
    return std::count(shown.begin(), shown.end(), '\n') == std::count(whole.begin(), whole.end(), '\n');
}

bool LacksOneCell(std::string_view shown, std::string_view whole) {
    std::vector<Row> shownRows = RowsOf(shown);
    std::vector<Row> wholeRows = RowsOf(whole);
    if (shownRows.size() != wholeRows.size()) return false;
    std::vector<Row> changed;
    std::vector<Row> missing;
    std::set_difference(shownRows.begin(), shownRows.end(), wholeRows.begin(), wholeRows.end(),
                        std::back_inserter(changed));
    std::set_difference(wholeRows.begin(), wholeRows.end(), shownRows.begin(), shownRows.end(),
                        std::back_inserter(missing));
    // The row that lacks the cell, and the header when the cell was the only one of its column. No row: the
    // cell belongs to a column that is not shown, and only the order differs.
    if (changed.size() != missing.size() || changed.size() > 2) return false;
    return std::all_of(changed.begin(), changed.end(), [&](const Row& row) {
        return std::any_of(missing.begin(), missing.end(),
                           [&](const Row& candidate) { return LacksOneOf(row, candidate); });
    });
}

}  // namespace krvcmd::reliability
