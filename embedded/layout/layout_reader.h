// Reads a layout file (TOML) into a farm. docs/layout.md describes the format.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/model/farm.h"

namespace embedded {

// One thing that is wrong with a layout file.
struct Problem {
    int line = 0;       // from 1; 0 when no line is to blame
    std::string field;  // the dotted path of the field, empty when none is to blame
    std::string text;   // without a full stop
    // The farm is read whole all the same: only a count that was given does not match it.
    bool isOfCount = false;
};

// "FILE:LINE: FIELD: TEXT", the parts that are not there left out.
std::string ProblemText(std::string_view file, const Problem& problem);

struct LayoutResult {
    Farm farm;  // whole only when there is no problem
    std::vector<Problem> problems;
};

// Finds every field that is missing, unknown or of the wrong kind; what contradicts what is
// FindContradictions' business. A text that is no TOML yields its first fault alone.
LayoutResult ReadLayout(std::string_view text);

}  // namespace embedded
