#pragma once

#include <cstdint>

namespace Ostrel::UI::Console {

// Where a console writer puts its text.
enum class Stream : std::uint8_t { StandardOutput, StandardError };

}  // namespace Ostrel::UI::Console
