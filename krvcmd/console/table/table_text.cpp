#include "krvcmd/console/table/table_text.h"

#include <algorithm>
#include <string>

#include "krvcmd/console/table/row_prefetch.h"
#include "krvcmd/console/text/display_width.h"
#include "krvcmd/console/text/percent_signs.h"
#include "krvcmd/console/text/text_line.h"

namespace Ostrel::UI::Console {
namespace {

// Pads a line of `length` positions with blanks to `width` positions, or cuts it.
void FitLine(TextLine& line, size_t length, size_t width) {
    // Usually only the blank after the last cell is too much.
    while (length > width && line.View().back() == ' ') {
        line.Truncate(line.GetSize() - 1);
        --length;
    }
    if (length > width) {
        const std::string_view rest = LeadingPart(line.View(), width);
        length = DisplayLength(rest);
        line.Truncate(rest.size());
    }
    line.AppendBlanks(width - length);
}

// Appends the line with one sign for every "%%" in it.
void AppendShown(std::string& text, TextLine& line) {
    text.append(line.View(), 0, ResolvePercentSigns(line.Characters()));
}

// Writes the rows of a table to the end of a text, one after the other.
class RowWriter {
  public:
    RowWriter(const TableLayout& layout, std::string& text) : m_layout(layout), m_text(text) {
        m_columns.reserve(layout.columns.size());
        for (const LaidOutColumn& column : layout.columns) {
            const std::string lead = column.isFirst ? " " : std::string(layout.separator) + ' ';
            m_columns.push_back({column, lead, CellFinder(column.column->GetColumnId())});
        }
    }

    void AppendFormatted(const CTableRow& row) {
        size_t lineLength = 0;
        size_t limit = m_layout.lineWidth;
        for (Column& column : m_columns) {
            const LaidOutColumn& shown = column.shown;
            const size_t columnStart = m_line.GetSize();
            m_line.Append(column.lead);
            size_t cellLength = shown.width;
            if (const CTableItem* cell = column.FindCell(row)) {
                cellLength = Render(column, *cell);
                limit += shown.hiddenSigns;
            } else {
                m_line.AppendBlanks(shown.width);
            }
            const size_t blanks = lineLength + cellLength == limit ? 1 : 2;
            // The separator before the cell does not count here.
            if (lineLength + cellLength + blanks > limit) {
                m_line.Truncate(columnStart);
                break;
            }
            if (blanks == 2) m_line.AppendBlanks(1);
            lineLength += cellLength + blanks + (shown.isFirst ? 0 : m_layout.separatorLength);
        }
        if (!EndsInPercentCell(m_line.View())) FitLine(m_line, lineLength, m_layout.lineWidth);
        EndLine();
    }

    void AppendPlain(const CTableRow& row) {
        constexpr uint32_t kFullText = 0;
        for (Column& column : m_columns) {
            if (!column.shown.isFirst) m_line.Append(m_layout.separator);
            if (const CTableItem* cell = column.FindCell(row)) cell->Render(m_line, kFullText);
        }
        EndLine();
    }

  private:
    struct Column {
        const LaidOutColumn& shown;
        std::string lead;  // before an aligned cell
        CellFinder finder;
        // The cell rendered last.
        const CTableItem* cell = nullptr;
        size_t cellLength = 0;  // in positions
        std::string cellText{};

        const CTableItem* FindCell(const CTableRow& row) {
            return shown.hasCells ? finder.FindIn(row) : nullptr;
        }
    };

    // Appends the cell and returns the positions taken. Often many rows have the same cell: its text is kept
    // from the second on.
    size_t Render(Column& column, const CTableItem& cell) {
        const bool isRepeated = column.cell == &cell;
        column.cell = &cell;
        if (isRepeated && !column.cellText.empty()) {
            m_line.Append(column.cellText);
            return column.cellLength;
        }
        const size_t start = m_line.GetSize();
        column.cellLength = cell.Render(m_line, column.shown.width);
        column.cellText.clear();
        if (isRepeated) column.cellText = m_line.View().substr(start);
        return column.cellLength;
    }

    // Moves the line to the end of the text.
    void EndLine() {
        m_line.Append('\n');
        AppendShown(m_text, m_line);
        m_line.Truncate(0);
    }

    const TableLayout& m_layout;
    std::string& m_text;
    std::vector<Column> m_columns;
    TextLine m_line;
};

// Calls `append` for every row.
template <typename Append>
void ForEachRow(std::span<const CTableRow* const> rows, Append append) {
    for (size_t index = 0; index < rows.size(); ++index) {
        if (index + 3 * kPrefetchStep < rows.size()) PrefetchRow(*rows[index + 3 * kPrefetchStep]);
        if (index + 2 * kPrefetchStep < rows.size()) PrefetchCellList(*rows[index + 2 * kPrefetchStep]);
        if (index + kPrefetchStep < rows.size()) PrefetchCells(*rows[index + kPrefetchStep]);
        append(*rows[index]);
    }
}

}  // namespace

std::string HeaderText(const TableLayout& layout) {
    TextLine line;
    size_t lineLength = 0;
    for (const LaidOutColumn& column : layout.columns) {
        const std::string title = column.column->RenderTitle(column.width);
        const size_t titleLength = DisplayLength(title);
        const size_t blanksAfter = lineLength + titleLength == layout.lineWidth + 1 ? 0 : 1;
        if (lineLength + 1 + titleLength + blanksAfter > layout.lineWidth) break;
        if (line.GetSize() != 0) {
            line.Append(layout.separator);
            lineLength += layout.separatorLength;
        }
        line.AppendBlanks(1);
        line.Append(title);
        line.AppendBlanks(blanksAfter);
        lineLength += 1 + titleLength + blanksAfter;
    }
    const size_t underlineLength = std::min(lineLength, layout.lineWidth);
    FitLine(line, lineLength, layout.lineWidth);
    std::string text;
    AppendShown(text, line);
    return text.append(1, '\n').append(underlineLength, '-').append(1, '\n');
}

std::string FormattedBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows) {
    std::string body;
    body.reserve(rows.size() * (layout.lineWidth + 1) + 1);
    RowWriter writer(layout, body);
    ForEachRow(rows, [&](const CTableRow& row) { writer.AppendFormatted(row); });
    body += '\n';
    return body;
}

std::string PlainBodyText(const TableLayout& layout, std::span<const CTableRow* const> rows) {
    std::string body;
    RowWriter writer(layout, body);
    ForEachRow(rows, [&](const CTableRow& row) { writer.AppendPlain(row); });
    return body;
}

bool EndsInPercentCell(std::string_view line) {
    const size_t size = line.size();
    return (size >= 2 && line[size - 2] == '%') || (size >= 3 && line[size - 3] == '%' && line.back() == '%');
}

}  // namespace Ostrel::UI::Console
