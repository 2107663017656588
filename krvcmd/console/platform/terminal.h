#pragma once

#include "krvcmd/console/stream.h"

namespace Ostrel::UI::Console::Platform {

// Whether the stream ends at a terminal, not in a file or a pipe.
bool IsTerminal(Stream stream);

// Whether there are terminals that act upon single bytes from 0x80 to 0x9F, as those of 8-bit ISO character
// sets do.
bool ObeysSingleBytes();

}  // namespace Ostrel::UI::Console::Platform
