#pragma once

#include <chrono>
#include <span>

namespace embedded {

// How long the devices of a real jukebox may take for a command before they count as failed.
struct TimeLimits {
    using Seconds = std::chrono::seconds;

    Seconds move{300};
    Seconds inventory{1'800};
    Seconds eject{120};
    Seconds ready{180};
    Seconds look{30};
    Seconds read{90};
    Seconds write{120};
    Seconds flush{600};
    Seconds close{3'600};
    Seconds blank{10'800};
    Seconds format{21'600};
    Seconds standstill{1'800};

    bool operator==(const TimeLimits&) const = default;
};

inline constexpr TimeLimits::Seconds kLongestTimeLimit{86'400};

struct TimeLimitInfo {
    const char* name;
    TimeLimits::Seconds TimeLimits::*limit;
    const char* meaning;
};
std::span<const TimeLimitInfo> AllTimeLimits();

}  // namespace embedded
