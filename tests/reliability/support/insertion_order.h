#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace krvcmd::reliability {

// A row as its cells, column by column; an empty text is a cell that the row lacks.
using Cells = std::vector<std::string>;

struct OrderKey {
    size_t column;
    bool isNumber;
    bool isDescending;
};

// Puts the rows, given as they arrived, into the order of the keys, by inserting one after the other: each
// goes in front of the first row that it belongs before, else to the end.
std::vector<Cells> InsertedOneByOne(const std::vector<Cells>& arrived, const std::vector<OrderKey>& keys);

// -1, 0 or 1. Texts that are equal up to "-@,;:. " and a number at the end are ordered by the number.
int CompareTexts(std::string_view left, std::string_view right);

}  // namespace krvcmd::reliability
