#pragma once

#include <string_view>

#include "embedded/model/handled_medium.h"
#include "embedded/simulated/durations/duration_profile.h"

namespace embedded {

struct CallDuration {
    Seconds moving{0};   // of the robot, turns included
    Seconds driving{0};  // of a drive, loading included
};

// How long the mechanics of a jukebox need for a call of this function.
//
// An export is one move. An import is a move to a drive, which reads the medium, and one to the slot.
// Everything else takes the medium from its slot to a drive and back. To work on side B, the robot turns the
// medium over and back again; for both sides, the drive loads it twice.
CallDuration DurationOf(const DurationProfile& profile, std::string_view function,
                        const HandledMedium& medium);

}  // namespace embedded
