#include <unistd.h>

#include "simulator/platform/terminal.h"

namespace krvsim {

bool IsStandardErrorATerminal() {
    return isatty(STDERR_FILENO) != 0;
}

}  // namespace krvsim
