#pragma once

#include <cstddef>
#include <cstdint>

namespace krvcmd::reliability {

// Random numbers that are the same on every system for the same seed.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t Next() {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    // 0 to `bound` - 1.
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() % bound); }

    std::int32_t Between(std::int32_t first, std::int32_t last) {
        const auto count = static_cast<std::size_t>(std::int64_t{last} - first + 1);
        return static_cast<std::int32_t>(first + static_cast<std::int64_t>(Below(count)));
    }

    // True once in `times` throws.
    bool OneIn(std::size_t times) { return Below(times) == 0; }

    template <class Choices>
    decltype(auto) Pick(const Choices& choices) {
        return choices[Below(static_cast<std::size_t>(choices.end() - choices.begin()))];
    }

    template <class Item, std::size_t N>
    const Item& Pick(const Item (&choices)[N]) {
        return choices[Below(N)];
    }

  private:
    std::uint64_t m_state;
};

}  // namespace krvcmd::reliability
