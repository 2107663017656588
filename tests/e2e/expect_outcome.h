#pragma once

#include <string>
#include <string_view>

#include "tests/e2e/case_file.h"
#include "tests/e2e/program.h"

namespace e2e {

// Checks an outcome against the case, and against what holds for every run that ended by itself.
void ExpectOutcome(const Case& expected, const Outcome& actual);

// What holds for every run that ended by itself: the client library found no fault with its calls, and a run
// that called it opened a session at most once, and closed it exactly once, as its last call.
void ExpectCleanCalls(const Outcome& actual);

// Whether the program under test is the Windows one, run by wine (tests/wine).
bool IsWindowsProgram();

// What a text leaves on the screen of a Windows console with that many columns: a tab is blanks up to the
// next multiple of 8, a full row continues in the next one, blanks at a row's end are not visible. One byte
// is one column.
std::string AsOnScreen(std::string_view text, int columns);

}  // namespace e2e
