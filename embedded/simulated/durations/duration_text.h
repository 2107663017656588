#pragma once

#include <chrono>
#include <string>

namespace embedded {

// "45 s", "12 min", "3 h 40 min": rounded to the nearest second below two minutes, else to the nearest
// minute.
std::string DurationText(std::chrono::microseconds duration);

}  // namespace embedded
