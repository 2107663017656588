#include "embedded/simulated/durations/deadline.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "embedded/simulated/durations/duration_text.h"

namespace embedded {
namespace {

using std::chrono::minutes;

constexpr minutes kDay = std::chrono::hours(24);

// The number of two digits; -1 for anything else.
int TwoDigits(std::string_view text) {
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    if (text.size() != 2 || !isDigit(text[0]) || !isDigit(text[1])) return -1;
    return (text[0] - '0') * 10 + (text[1] - '0');
}

std::string TimeOfDayText(minutes time) {
    std::array<char, 16> text{};
    const auto hours = static_cast<int>(time / std::chrono::hours(1) % 24);
    const auto rest = static_cast<int>(time.count() % 60);
    const int length = std::snprintf(text.data(), text.size(), "%02d:%02d", hours, rest);
    return {text.data(), static_cast<size_t>(length)};
}

}  // namespace

std::optional<minutes> ReadTimeOfDay(std::string_view text) {
    if (text.size() != 5 || text[2] != ':') return std::nullopt;
    const int hours = TwoDigits(text.substr(0, 2));
    const int rest = TwoDigits(text.substr(3));
    if (hours < 0 || hours > 23 || rest < 0 || rest > 59) return std::nullopt;
    return std::chrono::hours(hours) + minutes(rest);
}

minutes LocalTimeOfDay(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const std::tm* local = std::localtime(&seconds);
    if (local == nullptr) return minutes(0);
    return std::chrono::hours(local->tm_hour) + minutes(local->tm_min);
}

std::optional<std::string> LateText(minutes start, std::chrono::microseconds duration, minutes deadline) {
    const minutes allowed = deadline > start ? deadline - start : deadline + kDay - start;
    if (duration <= allowed) return std::nullopt;
    return "Started at " + TimeOfDayText(start) + ", it ends about " + DurationText(duration - allowed) +
           " after the deadline " + TimeOfDayText(deadline) + ".";
}

}  // namespace embedded
