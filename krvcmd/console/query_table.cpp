#include "krvcmd/console/query_table.h"

#include <utility>
#include <vector>

#include "krvcmd/console/column_catalogue.h"
#include "krvcmd/console/platform/console_width.h"

namespace Ostrel::UI::Console {

namespace {

constexpr std::uint32_t kWidthWithoutConsole = 32767;

constexpr std::string_view kColumnHelpIntroduction =
    "Following column identifiers can be used to specify columns of the table and the sort order. For "
    "example, "
    "to display IDs, location and labels of all volumes, sorted by label and volumes with identical labels "
    "sorted by magazine/slot number:\n"
    "query volumes columns=ILl sort=lms\n"
    "\n"
    "and sorted in reverse order:\n"
    "query volumes columns=ILl sort=-lms\n"
    "\n";

// The last cell of a line stays free, so that a full line does not make the console begin another one.
std::uint32_t ConsoleLineWidth() {
    const std::int32_t bufferWidth = Platform::ScreenBufferWidth();
    const bool isUsable = bufferWidth >= 2 && bufferWidth <= INT16_MAX;
    return isUsable ? static_cast<std::uint32_t>(bufferWidth - 1) : kWidthWithoutConsole;
}

}  // namespace

CKrvQueryTable::CKrvQueryTable() : m_cells(GetMemory()) {
    SetSeparator("|");
    SetMaxWidth(ConsoleLineWidth());
}

void CKrvQueryTable::PrintColumnHelp() {
    PrintText(Stream::StandardOutput, "\n");
    PrintText(Stream::StandardOutput, kColumnHelpIntroduction);
    for (const ColumnInfo& column : GetColumnCatalogue())
        PrintDefinition(column.letter, column.description);
}

bool CKrvQueryTable::SetColumnLetters(std::string_view letters) {
    bool allKnown = true;
    std::vector<CTableColumn> columns;
    for (std::size_t index = 0; index < letters.size(); ++index) {
        CTableColumn column = MakeColumn(letters.substr(index, 1));
        if (column.GetColumnId() == 0) {
            allKnown = false;
            continue;
        }
        columns.push_back(std::move(column));
    }
    SetColumns(std::move(columns));
    return allKnown;
}

bool CKrvQueryTable::SetSortLetters(std::string_view letters) {
    bool allKnown = true;
    std::int32_t direction = kAscending;
    std::vector<SortKey> keys;
    for (std::size_t index = 0; index < letters.size(); ++index) {
        const std::string_view letter = letters.substr(index, 1);
        if (letter == "+") {
            direction = kAscending;
        } else if (letter == "-") {
            direction = kDescending;
        } else if (const std::uint32_t columnId = FindColumnInfo(letter).columnId; columnId != 0) {
            keys.push_back({columnId, direction});
        } else {
            allKnown = false;
        }
    }
    SetSortKeys(std::move(keys));
    return allKnown;
}

}  // namespace Ostrel::UI::Console
