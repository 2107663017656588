#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/program.h"

namespace e2e {

// A command line without the program's name.
struct CommandLine {
    std::string text;                // as typed in a shell
    std::vector<std::string> words;  // as the program receives them
};

// One test as data: what is typed on which farm, and what must come of it.
struct Case {
    std::string name;                       // a sentence about behaviour
    int line = 0;                           // one-based position in its file
    std::vector<CommandLine> commandLines;  // each must give all of the below
    Run run;                                // everything but the words
    std::string standardOutput;
    std::string standardError;
    int exitStatus = 0;
    int killedBy = 0;  // the signal that ends the program, 0 when it ends by itself
    bool comparesCalls = false;
    std::vector<std::string> calls;
    std::string notOnWindows;  // why the Windows program skips the case; empty when it does not
};

// Expected outputs, by the names of their files without ".txt".
using GoldenTexts = std::map<std::string, std::string, std::less<>>;

// The cases of a file; README.md describes the format. Throws std::runtime_error with the line's number when
// something is missing or unknown.
std::vector<Case> ReadCases(std::string_view text, const GoldenTexts& goldenTexts);

}  // namespace e2e
