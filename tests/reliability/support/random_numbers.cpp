#include "tests/reliability/support/random_numbers.h"

#include <chrono>
#include <cstdlib>
#include <string_view>

namespace krvcmd::reliability {
namespace {

uint64_t FirstSeed() {
    const char* const wanted = std::getenv("KRVCMD_RELIABILITY_SEED");
    if (wanted == nullptr) return 1;
    if (std::string_view(wanted) != "time") return std::strtoull(wanted, nullptr, 10);
    return static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

}  // namespace

Seeds SeedsToTry(uint64_t usualCount) {
    const char* const wanted = std::getenv("KRVCMD_RELIABILITY_RUNS");
    const uint64_t first = FirstSeed();
    return {first, first + (wanted == nullptr ? usualCount : std::strtoull(wanted, nullptr, 10))};
}

}  // namespace krvcmd::reliability
