#include "tests/unit/console/support/text_table.h"

#include "krvcmd/console/table/table_item.h"
#include "tests/support/captured_output.h"

namespace krvcmd::test {

using namespace Ostrel::UI::Console;

TextTable::TextTable(uint32_t maxWidth, std::initializer_list<ColumnSketch> columns) {
    std::vector<CTableColumn> tableColumns;
    for (const ColumnSketch& sketch : columns) {
        CTableColumn column;
        column.SetColumnId(sketch.columnId);
        column.SetTitle(sketch.title);
        column.SetMinWidth(sketch.minWidth);
        column.SetMaxWidth(sketch.maxWidth);
        column.SetHidesSign(sketch.hidesSign);
        tableColumns.push_back(column);
    }
    SetColumns(std::move(tableColumns));
    SetMaxWidth(maxWidth);
    SetSeparator("|");
}

void TextTable::Add(Cells cells) {
    CTableRow row;
    for (const auto& cell : cells)
        row.AddItem(*cell);
    m_cells.push_back(std::move(cells));
    AddRow(std::move(row));
}

void TextTable::AddTexts(std::initializer_list<std::pair<uint32_t, std::string_view>> texts) {
    Cells cells;
    for (const auto& [columnId, text] : texts)
        cells.push_back(Text(columnId, text));
    Add(std::move(cells));
}

std::string TextTable::Printed() {
    return OutputOf([this] { Print(); });
}

std::string TextTable::PrintedPlain() {
    SetFormatted(false);
    return Printed();
}

std::unique_ptr<CTableItem> Text(uint32_t columnId, std::string_view text) {
    return std::make_unique<CTableStringItem>(columnId, text);
}

std::unique_ptr<CTableItem> Number(uint32_t columnId, int64_t value) {
    return std::make_unique<CTableIntItem>(columnId, value, /*withUnit=*/false);
}

std::unique_ptr<CTableItem> Percent(uint32_t columnId, int64_t used) {
    return std::make_unique<CTablePercentIntItem>(columnId, 100 - used, 100);
}

std::string Rendered(const CTableItem& cell, uint32_t width) {
    TextLine text;
    cell.Render(text, width);
    return std::string(text.View());
}

}  // namespace krvcmd::test
