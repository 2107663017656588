#include "tests/e2e/windows_program.h"

#include <cstdlib>

namespace e2e {

bool IsWindowsProgram() {
    return std::getenv("KRVCMD_E2E_WINDOWS") != nullptr;
}

}  // namespace e2e
