#pragma once

#include <vector>

#include "embedded/attached/device/waiting.h"
#include "embedded/attached/transport/iscsi_address.h"

namespace embedded::attached {

// Every logical unit of every target that a portal names, by its address at this portal. A target that cannot
// be asked is told in `problems`.
struct PortalUnits {
    std::vector<IscsiAddress> units;
    std::vector<Error> problems;
};
Result<PortalUnits> ListPortalUnits(const IscsiPortal& portal, const IscsiLogin& login,
                                    const IscsiLimits& limits, Waiting& waiting = RealWaiting());

}  // namespace embedded::attached
