#pragma once

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// SPC-4, 6.47. No data; the status says whether the device is ready.
Cdb TestUnitReady();

// SPC-4, 6.39, for sense data in fixed format. The answer is for DecodeSense().
Cdb RequestSense(uint8_t allocation);

enum class Removal { Allow, Prevent };

// SBC-3: PREVENT ALLOW MEDIUM REMOVAL; SMC-3, 6.7. Lasts until it is allowed again by the same initiator,
// or until a reset.
Cdb PreventAllowMediumRemoval(Removal removal);

enum class UnitAction {
    Stop,   // spins the medium down
    Start,  // makes it ready for access
    Eject,
    Load,
};

// The device answers at once (IMMED), or when it has done.
enum class Answer { WhenDone, AtOnce };

// SBC-3: START STOP UNIT; MMC-6, 6.42.
Cdb StartStopUnit(UnitAction action, Answer answer);

enum class Turning { Keep, Invert };

// Element addresses (SMC-3, 6.6). `picker` 0 leaves the choice of the picker to the changer.
struct Move {
    uint16_t picker = 0;
    uint16_t source = 0;
    uint16_t destination = 0;
    Turning turning = Turning::Keep;  // Invert: the other side of the medium comes up
};
Cdb MoveMedium(const Move& move);

}  // namespace embedded::attached
