#pragma once

#include <cstdint>

namespace embedded {

// Numbers that look random and are the same for the same seed on every platform (SplitMix64).
class Random {
  public:
    explicit Random(int64_t seed) : m_seed(static_cast<uint64_t>(seed)) {}

    uint64_t Next() { return Nth(++m_count); }

    // The n-th number of the seed, n from 1.
    uint64_t Nth(uint64_t n) const {
        uint64_t mixed = m_seed + n * 0x9E3779B97F4A7C15U;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    // From 0 to count - 1; `count` is 1 or more.
    uint64_t Below(uint64_t count) { return Next() % count; }

    bool PerCent(uint64_t chance) { return Below(100) < chance; }

  private:
    uint64_t m_seed;
    uint64_t m_count = 0;
};

}  // namespace embedded
