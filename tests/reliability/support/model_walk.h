#pragma once

#include <cstdint>
#include <functional>

#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/model_library.h"

namespace krvcmd::reliability {

// A position in a walk over slots; zero-based, -1 when not given.
struct Place {
    int32_t jukebox = -1;
    int32_t magazine = -1;
    int32_t slot = -1;
    int32_t side = -1;
};

enum class Level { Jukebox, Magazine, Slot };

// The model's walk over the slots of one jukebox.
class SlotWalk {
  public:
    explicit SlotWalk(const ModelLibrary& library) : m_library(library) {}

    // Finds the first slot. `magazine` and `slot` are one-based.
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

using SlotWork = std::function<Result(const Place&)>;

// How import, export, scan, format and query walk over slots.
struct WalkRules {
    int32_t repeat = 0;
    bool stopsWhenNoMedium = false;
};

// Walks one addressed item, whose `magazine` and `slot` are one-based.
Result WalkSlots(const ModelLibrary& library, const WalkRules& rules, const Place& address,
                 const SlotWork& work);

// Works on the one slot that holds the volume.
Result WorkOnVolume(const ModelLibrary& library, int32_t volume, const SlotWork& work);

// What import, export, scan and format do with one slot.
Result MoveMedium(const ModelLibrary& library, Verb verb, const Place& place);
Result ScanMedium(const ModelLibrary& library, Place place);
Result FormatMedium(const ModelLibrary& library, const CommandSpec& command, const Place& place);

// What enable and disable do.
Result SwitchVolume(const ModelLibrary& library, bool enable, int32_t volume);
Result SwitchVolumesInSlot(const ModelLibrary& library, bool enable, const Place& address);

}  // namespace krvcmd::reliability
