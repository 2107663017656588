#include "krvcmd/console/output_object.h"

#include <algorithm>
#include <vector>

#include "krvcmd/console/display_text.h"
#include "krvcmd/console/fit_columns.h"
#include "krvcmd/console/percent_signs.h"
#include "krvcmd/console/placeholders.h"
#include "krvcmd/console/program_names.h"
#include "krvcmd/console/table_layout.h"
#include "krvcmd/console/table_text.h"
#include "krvcmd/console/wrapped_text.h"

namespace Ostrel::UI::Console {

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
        WriteFormat(Stream::StandardOutput, PlainBodyText(layout, rows));
        return;
    }
    WriteFormat(Stream::StandardOutput, HeaderText(layout));
    WriteFormat(Stream::StandardOutput, FormattedBodyText(layout, rows));
}

void COutputObject::MeasureColumns() {
    std::uint32_t total = 0;
    for (CTableColumn& column : Columns()) {
        const ColumnUsage* usage = FindUsage(column.GetColumnId());
        if (usage != nullptr) {
            column.SetWidth(
                std::max(column.GetWidthOrTitle(), static_cast<std::uint32_t>(usage->maxTextLength)));
        }
        if (usage != nullptr || ShowsEmptyColumns()) total += column.GetWidthOrTitle();
    }
    SetContentWidth(total);
}

std::size_t COutputObject::FitIntoLine() {
    std::vector<FittedColumn> fitted;
    fitted.reserve(GetColumnCount());
    for (std::size_t index = 0; index < GetColumnCount(); ++index) {
        const CTableColumn& column = Columns()[index];
        fitted.push_back({column.GetMinWidth(), column.GetMaxWidth(), column.GetWidth(),
                          !ShowsEmptyColumns() && IsColumnEmpty(index)});
    }
    const auto separatorLength = static_cast<std::int64_t>(DisplayLength(GetSeparator()));
    const std::int64_t lineWidth = FitColumns(m_maxWidth, GetContentWidth(), separatorLength, fitted);
    for (std::size_t index = 0; index < GetColumnCount(); ++index) {
        Columns()[index].SetWidth(static_cast<std::uint32_t>(fitted[index].width));
    }
    return static_cast<std::size_t>(std::max<std::int64_t>(lineWidth, 0));
}

TableLayout COutputObject::MakeLayout(std::size_t lineWidth) const {
    TableLayout layout{{}, GetSeparator(), lineWidth, SinkOf(Stream::StandardOutput)};
    for (std::size_t index = 0; index < GetColumnCount(); ++index) {
        const CTableColumn& column = GetColumns()[index];
        const std::uint32_t width = ShowsEmptyColumns() ? column.GetWidthOrTitle() : column.GetWidth();
        const bool isEmpty = IsColumnEmpty(index);
        if (width == 0 || (isEmpty && !ShowsEmptyColumns())) continue;
        layout.columns.push_back({&column, width, !isEmpty, index == 0});
    }
    return layout;
}

void COutputObject::WriteFormat(Stream stream, std::string text) {
    ResolvePercentSigns(text);
    m_streams.Write(stream, text);
}

}  // namespace Ostrel::UI::Console
