// The time of day of this process, which a test can set: clocks are corrected, and batteries run out.
#pragma once

#include <cstdint>

namespace embedded_test {

// From now on the time of day is this many seconds ahead of the true one, or behind it when negative.
void SetWallClockAhead(int64_t seconds);

}  // namespace embedded_test
