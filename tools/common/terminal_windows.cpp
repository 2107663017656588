#include <io.h>
#include <stdio.h>

#include "tools/common/terminal.h"

namespace embedded::tools {

bool IsStandardErrorATerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

}  // namespace embedded::tools
