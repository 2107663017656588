#include "embedded/attached/disc/noise.h"

#include <array>

namespace embedded::attached {

bool LooksLikeNoise(Bytes bytes) {
    constexpr size_t kFewest = 16384;
    if (bytes.size() < kFewest) return false;
    std::array<size_t, 256> counts{};
    for (const uint8_t byte : bytes)
        ++counts[byte];
    const double expected = static_cast<double>(bytes.size()) / static_cast<double>(counts.size());
    double chiSquare = 0;
    for (const size_t count : counts) {
        const double deviation = static_cast<double>(count) - expected;
        chiSquare += deviation * deviation / expected;
    }
    // Noise has 255 on average, with a standard deviation of 22.6. These are five of them to either side;
    // compressed data lie far above.
    constexpr double kLowest = 142;
    constexpr double kHighest = 368;
    return chiSquare > kLowest && chiSquare < kHighest;
}

}  // namespace embedded::attached
