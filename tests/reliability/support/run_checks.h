#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/program_run.h"

namespace krvcmd::reliability {

// The first of the rules for every run that this one breaks, in words; empty when it keeps them all:
//  - The library finds no fault with its calls.
//  - A run that calls the library closes the session exactly once, as its last call.
//  - One result line, or none after a quiet success and after help.
//  - The exit status belongs to the result line.
//  - The banner is printed at most once, and first.
std::string BrokenRule(const ProgramRun& run);

// Scripts a freshly reset library, each time in the same way.
using Script = std::function<void(krvfake::FakeLibrary& library)>;

// Carries the command out on two libraries with the same script, once by the program and once by the model
// (model.h). Empty when the program breaks no rule and both make the same calls, have the same result and
// list as many rows; else the first difference.
std::string DifferenceFromModel(ProgramRunner& program, const CommandSpec& command,
                                const std::vector<std::string>& words, const Script& script);

}  // namespace krvcmd::reliability
