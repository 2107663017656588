#include "embedded/simulated/durations/duration_text.h"

#include <chrono>
#include <cstdint>

namespace embedded {

std::string DurationText(std::chrono::microseconds duration) {
    using std::chrono::minutes;
    using std::chrono::seconds;
    const auto rounded = std::chrono::round<seconds>(duration);
    if (rounded < minutes(2)) return std::to_string(rounded.count()) + " s";
    const int64_t all = std::chrono::round<minutes>(duration).count();
    constexpr int64_t kMinutesOfHour = 60;
    const int64_t hours = all / kMinutesOfHour;
    const int64_t rest = all % kMinutesOfHour;
    if (hours == 0) return std::to_string(rest) + " min";
    return std::to_string(hours) + " h" + (rest == 0 ? "" : " " + std::to_string(rest) + " min");
}

}  // namespace embedded
