// Whether somebody watches.
#pragma once

namespace embedded::tools {

bool IsStandardErrorATerminal();

}  // namespace embedded::tools
