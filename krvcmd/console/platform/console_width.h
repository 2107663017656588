#pragma once

#include <cstdint>

namespace Ostrel::UI::Console::Platform {

// The width, in character cells, of the console's screen buffer on standard output; 0 when standard output
// is no console.
std::int32_t ScreenBufferWidth();

}  // namespace Ostrel::UI::Console::Platform
