#pragma once

#include <string>
#include <vector>

#include "embedded/jukebox/time_limits.h"

namespace embedded::tools {

// The limits with changes of the form NAME=SECONDS or NAME=default; throws a UsageFailure for any other.
TimeLimits WithLimits(TimeLimits limits, const std::vector<std::string>& changes);

// "as usual", or those that are not: "move 600 s, write 240 s".
std::string LimitsText(const TimeLimits& limits);

}  // namespace embedded::tools
