// A plain table for the terminal: columns as wide as their widest cell, two blanks between them.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace embedded::tools {

class TextTable {
  public:
    explicit TextTable(std::vector<std::string> head) : m_rows{std::move(head)} {}

    // As many cells as the head has.
    void Add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }

    void Write(std::ostream& out) const;

  private:
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace embedded::tools
