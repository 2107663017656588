#pragma once

#include "tests/e2e/case_file.h"
#include "tests/e2e/program.h"

namespace e2e {

// Compares an outcome with what the case expects, and with what holds for every run: nothing wrong
// was handed to the client library, and a run that called it closed its session once, as the last.
void ExpectOutcome(const Case& expected, const Outcome& actual);

// What holds for every run that ended by itself.
void ExpectCleanCalls(const Outcome& actual);

}  // namespace e2e
