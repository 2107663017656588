#pragma once

#include "embedded/attached/discovery/discovery.h"

namespace embedded::attached {

struct LoadingLimits {
    std::chrono::milliseconds move{300'000};
    std::chrono::milliseconds ready{180'000};  // until some drive is ready with the disc
};

// Finds out which lone drives are behind the elements of a changer among the findings whose drives are not
// known: loads a disc into each of these elements, looks which drive becomes ready, and puts the disc back
// where it was. Stops at the first failure. Nobody else may use the changer meanwhile.
Result<Nothing> FindDrivesByLoading(Findings& findings, FoundChanger& changer, const Opener& open,
                                    const LoadingLimits& limits = {}, Waiting& waiting = RealWaiting());

}  // namespace embedded::attached
