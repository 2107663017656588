#pragma once

#include <cstdint>

#include "tests/reliability/support/model_library.h"

namespace krvcmd::reliability {

// Where a walk over slots stands; all numbers zero-based. -1: not given.
struct Place {
    std::int32_t jukebox = -1;
    std::int32_t magazine = -1;
    std::int32_t slot = -1;
    std::int32_t side = -1;
};

enum class Level { Jukebox, Magazine, Slot };

// The model's walk over the slots of one jukebox.
class ModelSlots {
  public:
    explicit ModelSlots(const ModelLibrary& library) : m_library(library) {}

    // Finds the first slot; `magazine` and `slot` as the user counts, from 1.
    Result Start(std::int32_t jukebox, std::int32_t magazine, std::int32_t slot, std::int32_t side);
    Result Next(Level level);

    const Place& At() const { return m_at; }

  private:
    Result FindAbsolute(std::int32_t jukebox, std::int32_t absoluteSlot, std::int32_t side);
    Result EnterMagazine(std::int32_t magazine);

    const ModelLibrary& m_library;
    std::int32_t m_magazines = 0;
    std::int32_t m_slots = 0;
    Place m_at;
};

}  // namespace krvcmd::reliability
