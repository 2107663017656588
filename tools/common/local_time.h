// Points of time in words.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace embedded::tools {

// Universal time, "2026-11-21 01:19:05Z".
std::string TimeText(std::chrono::system_clock::time_point time);
std::string TimeText(std::filesystem::file_time_type time);

// With microseconds, "2026-11-21T01:19:05.123456Z".
std::string PreciseTimeText(std::chrono::system_clock::time_point time);

}  // namespace embedded::tools
