#include <unistd.h>

#include "tools/common/terminal.h"

namespace embedded::tools {

bool IsStandardErrorATerminal() {
    return isatty(STDERR_FILENO) != 0;
}

}  // namespace embedded::tools
