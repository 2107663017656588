#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace embedded {

// A time of day, "06:00", in minutes since midnight; nothing for any other text.
std::optional<std::chrono::minutes> ReadTimeOfDay(std::string_view text);

// The local time of day, in whole minutes since midnight. For one thread at a time.
std::chrono::minutes LocalTimeOfDay(std::chrono::system_clock::time_point time);

// A warning if what starts at one time of day and takes this long ends later than the next deadline; nothing
// if it is in time. A deadline at the time of the start is that of the next day.
std::optional<std::string> LateText(std::chrono::minutes start, std::chrono::microseconds duration,
                                    std::chrono::minutes deadline);

}  // namespace embedded
