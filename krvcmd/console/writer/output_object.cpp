#include "krvcmd/console/writer/output_object.h"

#include <algorithm>
#include <vector>

#include "krvcmd/console/table/fit_columns.h"
#include "krvcmd/console/table/table_text.h"
#include "krvcmd/console/text/display_width.h"
#include "krvcmd/console/text/percent_signs.h"
#include "krvcmd/console/text/wrap.h"

namespace krvcmd {

ProgramNames& GetProgramNames() {
    static ProgramNames names;
    return names;
}

}  // namespace krvcmd

namespace Ostrel::UI::Console {

void ReplacePlaceholder(std::string& text, std::string_view placeholder, std::string_view replacement) {
    for (size_t at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder)) {
        text.replace(at, placeholder.size(), replacement);
    }
}

COutputObject::COutputObject()
    : m_commandName(krvcmd::GetProgramNames().commandName),
      m_productName(krvcmd::GetProgramNames().productName) {}

void COutputObject::PrintText(Stream stream, std::string_view text) {
    std::string replaced(text);
    ReplacePlaceholder(replaced, "[CmdLine]", m_commandName);
    ReplacePlaceholder(replaced, "[ProductName]", m_productName);
    WriteFormat(stream, WrapText(replaced, m_maxWidth));
}

void COutputObject::PrintDefinition(std::string_view term, std::string_view description) {
    WriteFormat(Stream::StandardOutput, DefinitionText(term, description, m_maxWidth));
}

void COutputObject::Print() {
    if (GetColumnCount() == 0 || GetColumnUsage().empty()) return;
    MeasureColumns();
    const TableLayout layout = MakeLayout(FitIntoLine());
    const std::vector<const CTableRow*> rows = GetRowsInOrder();
    if (!m_formatted) {
        m_streams.Write(Stream::StandardOutput, PlainBodyText(layout, rows));
        return;
    }
    m_streams.Write(Stream::StandardOutput, HeaderText(layout));
    m_streams.Write(Stream::StandardOutput, FormattedBodyText(layout, rows));
}

void COutputObject::MeasureColumns() {
    uint32_t total = 0;
    for (CTableColumn& column : Columns()) {
        const ColumnUsage* usage = FindUsage(column.GetColumnId());
        if (usage != nullptr) {
            const auto longestText = static_cast<uint32_t>(usage->maxTextLength);
            column.SetWidth(std::max(column.GetWidth(/*useTitle=*/true), longestText));
        }
        if (usage != nullptr || ShowsEmptyColumns()) total += column.GetWidth(/*useTitle=*/true);
    }
    SetContentWidth(total);
}

size_t COutputObject::FitIntoLine() {
    std::vector<FittedColumn> fitted;
    fitted.reserve(GetColumnCount());
    for (size_t index = 0; index < GetColumnCount(); ++index) {
        const CTableColumn& column = Columns()[index];
        fitted.push_back({column.GetMinWidth(), column.GetMaxWidth(), column.GetWidth(/*useTitle=*/false),
                          !ShowsEmptyColumns() && IsColumnEmpty(index)});
    }
    const auto separatorLength = static_cast<int64_t>(DisplayLength(GetSeparator()));
    const int64_t lineWidth = FitColumns(m_maxWidth, GetContentWidth(), separatorLength, fitted);
    for (size_t index = 0; index < GetColumnCount(); ++index) {
        Columns()[index].SetWidth(static_cast<uint32_t>(fitted[index].width));
    }
    return static_cast<size_t>(std::max<int64_t>(lineWidth, 0));
}

TableLayout COutputObject::MakeLayout(size_t lineWidth) const {
    TableLayout layout{{}, GetSeparator(), DisplayLength(GetSeparator()), lineWidth};
    for (size_t index = 0; index < GetColumnCount(); ++index) {
        const CTableColumn& column = GetColumns()[index];
        const uint32_t width = column.GetWidth(/*useTitle=*/ShowsEmptyColumns());
        const bool isEmpty = IsColumnEmpty(index);
        if (width == 0 || (isEmpty && !ShowsEmptyColumns())) continue;
        const size_t hiddenSigns = column.HidesSign() ? 1 : 0;
        layout.columns.push_back({&column, width, !isEmpty, index == 0, hiddenSigns});
    }
    return layout;
}

void COutputObject::WriteFormat(Stream stream, std::string format) {
    ResolvePercentSigns(format);
    m_streams.Write(stream, format);
}

}  // namespace Ostrel::UI::Console
