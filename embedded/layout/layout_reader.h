#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/model/farm.h"

namespace embedded {

// One problem of a layout file.
struct Problem {
    int line = 0;       // one-based; 0 = unknown
    std::string field;  // dotted path such as "jukebox[2].name"; empty = the file or the farm as a whole
    std::string text;   // without a full stop
    // Only a stated count does not match: the farm is complete all the same.
    bool isCountMismatch = false;
};

// "FILE:LINE: FIELD: TEXT", without the parts that are unknown.
std::string ProblemText(std::string_view file, const Problem& problem);

struct LayoutResult {
    Farm farm;  // complete only without problems
    std::vector<Problem> problems;
};

// Reads a layout file (TOML; docs/layout.md describes the format). Finds every field that is missing,
// unknown, of the wrong type or out of range, but no contradictions between fields: FindContradictions
// does. If the text is not TOML, reports only the first problem.
LayoutResult ReadLayout(std::string_view text);

}  // namespace embedded
