#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/program.h"

namespace e2e {

// One test as data: what is typed on top of which farm, and all that must come of it.
struct Case {
    std::string name;                       // a sentence about behaviour
    int line = 0;                           // where it stands in its file
    std::vector<std::string> commandLines;  // each one must give all of the below
    Run run;                                // everything but the words
    std::string standardOutput;
    std::string standardError;
    int exitStatus = 0;
    int killedBy = 0;  // the signal that ends the program, 0 when it ends by itself
    bool comparesCalls = false;
    std::vector<std::string> calls;
    std::string notOnWindows;  // why the case says nothing about the Windows program; empty: it does
};

// The cases of a file (README.md describes the format). Throws std::runtime_error with the line's
// number when something is missing or cannot be understood.
std::vector<Case> ReadCases(std::string_view text);

}  // namespace e2e
