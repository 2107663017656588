#include "tests/reliability/memory/out_of_memory_checks.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/reliability/support/run_checks.h"

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

// The cells that show something, in order. A blank cell counts as missing.
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
    std::ranges::sort(rows);
    return rows;
}

bool LacksOneOf(const Row& shown, const Row& whole) {
    if (shown.size() + 1 != whole.size()) return false;
    const auto [missing, other] = std::mismatch(whole.begin(), whole.end(), shown.begin(), shown.end());
    return std::equal(missing + 1, whole.end(), other, shown.end());
}

// Whether `shown` is the table `whole`, with "|" between the cells, but for one cell of one row: it is blank,
// or its column is missing because no other row fills it. Blanks around cells, the widths of columns and the
// order of rows may differ: they depend on the cells.
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
    // One row lacks the cell, and so does the header when it was the only cell of its column. No row changes
    // when the column is not shown; then only the order differs.
    if (changed.size() != missing.size() || changed.size() > 2) return false;
    return std::all_of(changed.begin(), changed.end(), [&](const Row& row) {
        return std::any_of(missing.begin(), missing.end(),
                           [&](const Row& candidate) { return LacksOneOf(row, candidate); });
    });
}

// With a limited width a missing cell can make room for another column, so that only the rows can be
// compared.
bool HasAsManyLines(std::string_view shown, std::string_view whole) {
    return std::count(shown.begin(), shown.end(), '\n') == std::count(whole.begin(), whole.end(), '\n');
}

// What a run that did without the refused memory does differently from the whole run, besides leaving out one
// cell.
std::string DifferenceWithoutMemory(const std::vector<std::string>& words, const ProgramRun& run,
                                    const ProgramRun& whole) {
    if (run.exitStatus != whole.exitStatus) return "exit status " + std::to_string(run.exitStatus);
    if (run.errorOutput != whole.errorOutput) return "its result line is: " + run.errorOutput;
    if (run.calls != whole.calls) return "its calls differ";
    if (run.output == whole.output || LacksOneCell(run.output, whole.output)) return {};
    const bool isNarrow = std::any_of(words.begin(), words.end(),
                                      [](const std::string& word) { return word.starts_with("width="); });
    if (isNarrow && HasAsManyLines(run.output, whole.output)) return {};
    return "its output is:\n" + run.output + "instead of:\n" + whole.output;
}

bool AsksForSize(const std::string& call) {
    return call.starts_with("KrvVolumeAspects") || call.starts_with("KrvVolumeLocations");
}

// Whether the run lacks one stretch of the whole run's calls, right after the call that tells how much memory
// a volume's aspects or locations need, and ends as the rest of its calls would.
bool PassesOverAVolume(const ProgramRun& run, const ProgramRun& whole) {
    if (run.calls.size() >= whole.calls.size()) return false;
    const auto [left, next] =
        std::mismatch(run.calls.begin(), run.calls.end(), whole.calls.begin(), whole.calls.end());
    if (left == run.calls.begin()) return false;
    const std::vector<Row> shown = RowsOf(run.output);
    const std::vector<Row> rows = RowsOf(whole.output);
    return AsksForSize(*(left - 1)) &&
           std::equal(run.calls.rbegin(), std::make_reverse_iterator(left), whole.calls.rbegin()) &&
           std::includes(rows.begin(), rows.end(), shown.begin(), shown.end());
}

// Whether the run makes the first calls of the whole run, but for stretches right after a call that tells how
// much memory a volume's aspects or locations need: the rest of that volume is passed over. The last call,
// which closes the session, is not compared.
bool LacksOnlyRestsOfVolumes(const ProgramRun& run, const ProgramRun& whole) {
    auto expected = whole.calls.begin();
    bool mayPassOver = false;
    for (size_t index = 0; index + 1 < run.calls.size(); ++index) {
        const std::string& call = run.calls[index];
        if (mayPassOver) expected = std::find(expected, whole.calls.end(), call);
        if (expected == whole.calls.end() || *expected != call) return false;
        ++expected;
        mayPassOver = AsksForSize(call);
    }
    return true;
}

}  // namespace

std::string OutOfMemoryProblem(const std::vector<std::string>& words, const ProgramRun& run,
                               const ProgramRun& whole) {
    if (std::string broken = BrokenRule(run); !broken.empty()) return broken;
    if (PassesOverAVolume(run, whole)) return {};
    if (run.exitStatus != 12) return DifferenceWithoutMemory(words, run, whole);
    if (run.errorOutput != "OS error 12: Cannot allocate memory\n")
        return "its result line is: " + run.errorOutput;
    return LacksOnlyRestsOfVolumes(run, whole) ? "" : "its calls differ";
}

}  // namespace krvcmd::reliability
