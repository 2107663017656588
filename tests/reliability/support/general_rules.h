#pragma once

#include <string>

#include "tests/reliability/support/program_run.h"

namespace krvcmd::reliability {

// What holds for every run, whatever the library does. Empty: all is well; else what is not.
//  - Nothing handed to the library was wrong.
//  - A library call is followed by the end of the session; that is one call, and the last.
//  - One result line, or none after a quiet success and after help.
//  - The exit status is that of the result line.
//  - The banner stands at most once, and first.
std::string BrokenRules(const ProgramRun& run);

}  // namespace krvcmd::reliability
