#pragma once

namespace e2e {

// Whether the program under test is the Windows one, run by wine (tests/wine).
bool IsWindowsProgram();

}  // namespace e2e
