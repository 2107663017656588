#pragma once

#include "embedded/attached/device/device.h"
#include "embedded/attached/scsi/inquiry.h"

namespace embedded::attached {

// Who a device says that it is.
struct Identity {
    InquiryData inquiry;
    std::string serialNumber;             // empty when it tells none
    std::vector<Designator> designators;  // empty when it tells none

    // Vendor, product and revision, fit for a terminal.
    std::string GetModel() const;
};
Result<Identity> ReadIdentity(Device& device);

}  // namespace embedded::attached
