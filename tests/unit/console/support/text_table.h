#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "krvcmd/console/writer/output_object.h"

namespace krvcmd::test {

// A column as a test writes it down.
struct ColumnSketch {
    uint32_t columnId;
    std::string_view title;
    int32_t minWidth = 0;
    int32_t maxWidth = 0;
    bool hidesSign = false;
};

// A table with cells of its own and "|" between its columns.
class TextTable : public Ostrel::UI::Console::COutputObject {
  public:
    TextTable(uint32_t maxWidth, std::initializer_list<ColumnSketch> columns);

    using Cells = std::vector<std::unique_ptr<Ostrel::UI::Console::CTableItem>>;

    // Adds a row of these cells.
    void Add(Cells cells);

    // Adds a row of text cells: (column id, text).
    void AddTexts(std::initializer_list<std::pair<uint32_t, std::string_view>> texts);

    // What Print writes.
    std::string Printed();

    // The same without header, alignment and padding.
    std::string PrintedPlain();

  private:
    std::vector<Cells> m_cells;
};

// Cells of each kind.
std::unique_ptr<Ostrel::UI::Console::CTableItem> Text(uint32_t columnId, std::string_view text);
std::unique_ptr<Ostrel::UI::Console::CTableItem> Number(uint32_t columnId, int64_t value);
std::unique_ptr<Ostrel::UI::Console::CTableItem> Percent(uint32_t columnId, int64_t used);

// The cell in a field of `width` positions.
std::string Rendered(const Ostrel::UI::Console::CTableItem& cell, uint32_t width);

// A row's cells, in this order.
template <typename... Cell>
TextTable::Cells CellsOf(Cell... cell) {
    TextTable::Cells cells;
    (cells.push_back(std::move(cell)), ...);
    return cells;
}

}  // namespace krvcmd::test
