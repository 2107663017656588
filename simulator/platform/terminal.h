// Whether somebody watches.
#pragma once

namespace krvsim {

bool IsStandardErrorATerminal();

}  // namespace krvsim
