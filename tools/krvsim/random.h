// Numbers that look random and are the same for the same seed on every platform.
#pragma once

#include <cstdint>

namespace embedded::tools {

class Random {
  public:
    explicit Random(int64_t seed) : m_state(static_cast<uint64_t>(seed)) {}

    uint64_t Next() {
        m_state += 0x9E3779B97F4A7C15U;
        uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    // From 0 to count - 1.
    uint64_t Below(uint64_t count) { return Next() % count; }

    bool PerCent(uint64_t chance) { return Below(100) < chance; }

  private:
    uint64_t m_state;
};

}  // namespace embedded::tools
