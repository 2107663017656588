#include <io.h>
#include <stdio.h>

#include "simulator/platform/terminal.h"

namespace krvsim {

bool IsStandardErrorATerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

}  // namespace krvsim
