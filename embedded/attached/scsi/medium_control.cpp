#include "embedded/attached/scsi/medium_control.h"

namespace embedded::attached {

Cdb TestUnitReady() {
    return Cdb(kTestUnitReady);
}

Cdb RequestSense(uint8_t allocation) {
    return Cdb(kRequestSense).Put8(4, allocation);
}

Cdb PreventAllowMediumRemoval(Removal removal) {
    return Cdb(kPreventAllow).Put8(4, removal == Removal::Prevent ? 1 : 0);
}

Cdb StartStopUnit(UnitAction action, Answer answer) {
    constexpr unsigned kStart = 0x01;
    constexpr unsigned kLoadOrEject = 0x02;
    const bool isStart = action == UnitAction::Start || action == UnitAction::Load;
    const bool movesTray = action == UnitAction::Eject || action == UnitAction::Load;
    return Cdb(kStartStopUnit)
        .Put8(1, answer == Answer::AtOnce ? 1 : 0)
        .Put8(4, (isStart ? kStart : 0) | (movesTray ? kLoadOrEject : 0));
}

Cdb MoveMedium(const Move& move) {
    return Cdb(kMoveMedium)
        .Put16(2, move.picker)
        .Put16(4, move.source)
        .Put16(6, move.destination)
        .Put8(10, move.turning == Turning::Invert ? 1 : 0);
}

}  // namespace embedded::attached
