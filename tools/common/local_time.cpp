#include "tools/common/local_time.h"

#include <array>
#include <cstdio>

namespace embedded::tools {
namespace {

using std::chrono::floor;

struct Clock {
    std::chrono::year_month_day date;
    std::chrono::hh_mm_ss<std::chrono::microseconds> time;
};

Clock Split(std::chrono::system_clock::time_point time) {
    const auto day = floor<std::chrono::days>(time);
    return {std::chrono::year_month_day(day),
            std::chrono::hh_mm_ss(std::chrono::duration_cast<std::chrono::microseconds>(time - day))};
}

template <typename... Values>
std::string Formatted(const char* format, Values... values) {
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), static_cast<size_t>(length)};
}

std::string DateText(const Clock& clock) {
    return Formatted("%04d-%02u-%02u", static_cast<int>(clock.date.year()),
                     static_cast<unsigned>(clock.date.month()), static_cast<unsigned>(clock.date.day()));
}

std::string ClockText(const Clock& clock) {
    return Formatted("%02d:%02d:%02d", static_cast<int>(clock.time.hours().count()),
                     static_cast<int>(clock.time.minutes().count()),
                     static_cast<int>(clock.time.seconds().count()));
}

}  // namespace

std::string TimeText(std::chrono::system_clock::time_point time) {
    const Clock clock = Split(time);
    return DateText(clock) + " " + ClockText(clock) + "Z";
}

std::string TimeText(std::filesystem::file_time_type time) {
    return TimeText(std::chrono::time_point_cast<std::chrono::system_clock::duration>(
        std::chrono::file_clock::to_sys(time)));
}

std::string PreciseTimeText(std::chrono::system_clock::time_point time) {
    const Clock clock = Split(time);
    return DateText(clock) + "T" + ClockText(clock) +
           Formatted(".%06dZ", static_cast<int>(clock.time.subseconds().count()));
}

}  // namespace embedded::tools
