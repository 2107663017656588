#pragma once

#include <string_view>

#include "tests/fake_library/fake_library.h"

namespace krvfake {

// Prepares the library from a script, the text form of what tests do in C++ (README.md describes
// it). Throws std::runtime_error with the line's number when a line cannot be understood.
void RunScript(FakeLibrary& library, std::string_view script);

}  // namespace krvfake
