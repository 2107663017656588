#pragma once

#include <functional>

#include "tests/reliability/support/model_library.h"
#include "tests/reliability/support/model_slots.h"
#include "tests/reliability/support/order.h"

namespace krvcmd::reliability {

using SlotWork = std::function<Result(const Place&)>;

// How import, export, scan, format and query go over slots.
struct WalkRules {
    int32_t repeat = 0;
    bool stopsWhenNoMedium = false;
};

// One addressed item: `magazine` and `slot` as the user counts.
Result WalkSlots(const ModelLibrary& library, const WalkRules& rules, const Place& address,
                 const SlotWork& work);

// The work on the one slot that holds the volume.
Result WorkOnVolume(const ModelLibrary& library, int32_t volume, const SlotWork& work);

// What import, export, scan and format do with one slot.
Result MoveMedium(const ModelLibrary& library, Verb verb, const Place& place);
Result ScanMedium(const ModelLibrary& library, Place place);
Result FormatMedium(const ModelLibrary& library, const Order& order, const Place& place);

// What enable and disable do.
Result SwitchVolume(const ModelLibrary& library, bool enable, int32_t volume);
Result SwitchVolumesInSlot(const ModelLibrary& library, bool enable, const Place& address);

}  // namespace krvcmd::reliability
