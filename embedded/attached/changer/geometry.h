#pragma once

#include "embedded/attached/device/device.h"
#include "embedded/attached/scsi/element_status.h"
#include "embedded/attached/scsi/mode_pages.h"

namespace embedded::attached {

// What a changer says of its build.
struct Geometry {
    ElementAddresses addresses;
    bool turnsMedia = false;                          // false as well when the changer does not say
    std::optional<ChangerCapabilities> capabilities;  // nothing when it does not say

    const ElementRange& RangeOf(ElementType type) const;
};

// Mode pages 1Dh, 1Eh and 1Fh; only the first must be there. No element is addressed twice.
Result<Geometry> ReadGeometry(Device& changer);

}  // namespace embedded::attached
