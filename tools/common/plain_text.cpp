#include "tools/common/plain_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace embedded::tools {
namespace {

struct DateAndTime {
    std::chrono::year_month_day date;
    std::chrono::hh_mm_ss<std::chrono::microseconds> time;
};

DateAndTime Split(std::chrono::system_clock::time_point time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    return {std::chrono::year_month_day(day),
            std::chrono::hh_mm_ss(std::chrono::duration_cast<std::chrono::microseconds>(time - day))};
}

template <typename... Values>
std::string Formatted(const char* format, Values... values) {
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), static_cast<size_t>(length)};
}

std::string DateText(const DateAndTime& moment) {
    return Formatted("%04d-%02u-%02u", static_cast<int>(moment.date.year()),
                     static_cast<unsigned>(moment.date.month()), static_cast<unsigned>(moment.date.day()));
}

std::string ClockText(const DateAndTime& moment) {
    return Formatted("%02d:%02d:%02d", static_cast<int>(moment.time.hours().count()),
                     static_cast<int>(moment.time.minutes().count()),
                     static_cast<int>(moment.time.seconds().count()));
}

}  // namespace

std::string Counted(int64_t number, const char* singular, const char* plural) {
    return std::to_string(number) + " " + (number == 1 ? singular : plural);
}

std::string SizeText(uintmax_t bytes) {
    constexpr uintmax_t kKibi = 1024;
    constexpr uintmax_t kMebi = kKibi * kKibi;
    if (bytes < kKibi) return std::to_string(bytes) + " B";
    if (bytes < kMebi) return std::to_string((bytes + kKibi / 2) / kKibi) + " KiB";
    return std::to_string((bytes + kMebi / 2) / kMebi) + " MiB";
}

std::string TimeText(std::chrono::system_clock::time_point time) {
    const DateAndTime moment = Split(time);
    return DateText(moment) + " " + ClockText(moment) + "Z";
}

std::string TimeText(std::filesystem::file_time_type time) {
    return TimeText(std::chrono::time_point_cast<std::chrono::system_clock::duration>(
        std::chrono::file_clock::to_sys(time)));
}

std::string PreciseTimeText(std::chrono::system_clock::time_point time) {
    const DateAndTime moment = Split(time);
    return DateText(moment) + "T" + ClockText(moment) +
           Formatted(".%06dZ", static_cast<int>(moment.time.subseconds().count()));
}

void TextTable::Write(std::ostream& out) const {
    std::vector<size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows) {
        for (size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size());
        }
    }
    for (const auto& row : m_rows) {
        std::string line;
        for (size_t column = 0; column < row.size(); ++column) {
            std::string cell = row[column];
            cell.resize(widths[column] + 2, ' ');
            line += cell;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

}  // namespace embedded::tools
