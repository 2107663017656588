#include "krvcmd/console/table/table_text.h"

#include <algorithm>

#include "krvcmd/console/text/display_width.h"

namespace Ostrel::UI::Console {
namespace {

// Pads the last line of `text`, which begins at byte `lineStart` and takes `length` positions, with blanks to
// `width` positions, or cuts it.
void FitLine(std::string& text, size_t lineStart, size_t length, size_t width) {
    // Usually only the blank after the last cell is too much.
    while (length > width && text.back() == ' ') {
        text.pop_back();
        --length;
    }
    if (length > width) {
        const std::string_view rest = LeadingPart(std::string_view(text).substr(lineStart), width);
        length = DisplayLength(rest);
        text.resize(lineStart + rest.size());
    }
    text.append(width - length, ' ');
}

const CTableItem* FindCell(const CTableRow& row, const LaidOutColumn& column) {
    return column.hasCells ? row.FindItem(column.column->GetColumnId()) : nullptr;
}

void AppendFormattedRow(std::string& body, const TableLayout& layout, const CTableRow& row) {
    const size_t separatorLength = DisplayLength(layout.separator);
    const size_t lineStart = body.size();
    size_t lineLength = 0;
    size_t limit = layout.lineWidth;
    for (const LaidOutColumn& column : layout.columns) {
        const size_t columnStart = body.size();
        if (!column.isFirst) body += layout.separator;
        body += ' ';
        size_t cellLength = column.width;
        if (const CTableItem* item = FindCell(row, column)) {
            cellLength = item->Render(body, column.width);
            limit += column.hiddenSigns;
        } else {
            body.append(column.width, ' ');
        }
        const size_t blanks = lineLength + cellLength == limit ? 1 : 2;
        // The separator before the cell does not count here.
        if (lineLength + cellLength + blanks > limit) {
            body.resize(columnStart);
            break;
        }
        if (blanks == 2) body += ' ';
        lineLength += cellLength + blanks + (column.isFirst ? 0 : separatorLength);
    }
    if (!EndsInPercentCell(std::string_view(body).substr(lineStart))) {
        FitLine(body, lineStart, lineLength, layout.lineWidth);
    }
    body += '\n';
}

void PrefetchCellList(const CTableRow& row) {
    constexpr size_t kPerCacheLine = 64 / sizeof(void*);
    const std::span<const CTableItem* const> items = row.GetItems();
    for (size_t index = 0; index < items.size(); index += kPerCacheLine)
        __builtin_prefetch(&items[index]);
}

void PrefetchCells(const CTableRow& row) {
    for (const CTableItem* item : row.GetItems())
        __builtin_prefetch(item);
}

// Calls `append` for every row. Sorted rows lie scattered in memory, and waiting for each of them would take
// longer than showing it. So each is prefetched in three steps, some rows ahead: the row, the list of its
// cells, the cells.
template <typename Append>
void ForEachRow(std::span<const CTableRow* const> rows, Append append) {
    constexpr size_t kStep = 6;  // rows between two steps
    for (size_t index = 0; index < rows.size(); ++index) {
        if (index + 3 * kStep < rows.size()) __builtin_prefetch(rows[index + 3 * kStep]);
        if (index + 2 * kStep < rows.size()) PrefetchCellList(*rows[index + 2 * kStep]);
        if (index + kStep < rows.size()) PrefetchCells(*rows[index + kStep]);
        append(*rows[index]);
    }
}

}  // namespace

std::string HeaderText(const TableLayout& layout) {
    const size_t separatorLength = DisplayLength(layout.separator);
    std::string text;
    size_t lineLength = 0;
    for (const LaidOutColumn& column : layout.columns) {
        const std::string title = column.column->RenderTitle(column.width);
        const size_t titleLength = DisplayLength(title);
        const std::string_view blankAfter = lineLength + titleLength == layout.lineWidth + 1 ? "" : " ";
        if (lineLength + 1 + titleLength + blankAfter.size() > layout.lineWidth) break;
        if (!text.empty()) {
            text += layout.separator;
            lineLength += separatorLength;
        }
        text.append(1, ' ').append(title).append(blankAfter);
        lineLength += 1 + titleLength + blankAfter.size();
    }
    const size_t underlineLength = std::min(lineLength, layout.lineWidth);
    FitLine(text, 0, lineLength, layout.lineWidth);
    return text.append(1, '\n').append(underlineLength, '-').append(1, '\n');
}

std::string FormattedBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows) {
    size_t lineSize = layout.lineWidth + 1;
    for (const LaidOutColumn& column : layout.columns)
        lineSize += column.hiddenSigns;
    std::string body;
    body.reserve(rows.size() * lineSize + 1);
    ForEachRow(rows, [&](const CTableRow& row) { AppendFormattedRow(body, layout, row); });
    body += '\n';
    return body;
}

std::string PlainBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows) {
    constexpr uint32_t kFullText = 0;
    std::string body;
    ForEachRow(rows, [&](const CTableRow& row) {
        for (const LaidOutColumn& column : layout.columns) {
            if (!column.isFirst) body += layout.separator;
            if (const CTableItem* item = FindCell(row, column)) item->Render(body, kFullText);
        }
        body += '\n';
    });
    return body;
}

bool EndsInPercentCell(std::string_view line) {
    const size_t size = line.size();
    return (size >= 2 && line[size - 2] == '%') || (size >= 3 && line[size - 3] == '%' && line.back() == '%');
}

}  // namespace Ostrel::UI::Console
