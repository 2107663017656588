#pragma once

#include <cstddef>
#include <cstdint>

namespace krvcmd::reliability {

// Random numbers that are the same on every system for the same seed (SplitMix64).
class RandomNumbers {
  public:
    explicit RandomNumbers(uint64_t seed) : m_state(seed) {}

    uint64_t Next() {
        m_state += 0x9E3779B97F4A7C15U;
        uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    // 0 to `bound` - 1.
    size_t Below(size_t bound) { return static_cast<size_t>(Next() % bound); }

    int32_t Between(int32_t first, int32_t last) {
        const auto count = static_cast<size_t>(int64_t{last} - first + 1);
        return static_cast<int32_t>(first + static_cast<int64_t>(Below(count)));
    }

    // True once in `times` calls, on average.
    bool OneIn(size_t times) { return Below(times) == 0; }

    template <class Choices>
    decltype(auto) Pick(const Choices& choices) {
        return choices[Below(static_cast<size_t>(choices.end() - choices.begin()))];
    }

    template <class Item, size_t N>
    const Item& Pick(const Item (&choices)[N]) {
        return choices[Below(N)];
    }

  private:
    uint64_t m_state;
};

// The seeds of a test with random contents. Two environment variables change them:
//   KRVCMD_RELIABILITY_SEED   the first seed, or "time" for one that the clock gives; 1 when not set
//   KRVCMD_RELIABILITY_RUNS   how many
struct Seeds {
    uint64_t first;
    uint64_t end;  // one past the last
};

Seeds SeedsToTry(uint64_t usualCount);

}  // namespace krvcmd::reliability
