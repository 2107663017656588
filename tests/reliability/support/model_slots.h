#pragma once

#include <cstdint>

#include "tests/reliability/support/model_library.h"

namespace krvcmd::reliability {

// Where a walk over slots stands; all numbers zero-based. -1: not given.
struct Place {
    int32_t jukebox = -1;
    int32_t magazine = -1;
    int32_t slot = -1;
    int32_t side = -1;
};

enum class Level { Jukebox, Magazine, Slot };

// The model's walk over the slots of one jukebox.
class ModelSlots {
  public:
    explicit ModelSlots(const ModelLibrary& library) : m_library(library) {}

    // Finds the first slot; `magazine` and `slot` as the user counts, from 1.
    Result Start(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side);
    Result Next(Level level);

    const Place& At() const { return m_at; }

  private:
    Result FindAbsolute(int32_t jukebox, int32_t absoluteSlot, int32_t side);
    Result EnterMagazine(int32_t magazine);

    const ModelLibrary& m_library;
    int32_t m_magazines = 0;
    int32_t m_slots = 0;
    Place m_at;
};

}  // namespace krvcmd::reliability
