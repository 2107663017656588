#include "tools/common/text_table.h"

#include <algorithm>

namespace embedded::tools {

void TextTable::Write(std::ostream& out) const {
    std::vector<size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows) {
        for (size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size());
        }
    }
    for (const auto& row : m_rows) {
        std::string line;
        for (size_t column = 0; column < row.size(); ++column) {
            std::string cell = row[column];
            cell.resize(widths[column] + 2, ' ');
            line += cell;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

}  // namespace embedded::tools
