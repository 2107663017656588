#pragma once

#include <filesystem>
#include <vector>

#include "embedded/attached/base/result.h"

namespace embedded::attached {

// A changer or drive of this machine, by the kernel's own list.
struct LocalDevice {
    std::string address;    // /dev/sg3
    std::string blockNode;  // the same drive as a block device, /dev/sr0; empty for changers

    bool operator==(const LocalDevice&) const = default;
};

// The changers (type 8), optical drives (types 5 and 7) and removable disks (type 0) below `sysfs`, which is
// /sys but in tests, in the order of their numbers. A machine without any SCSI device has none.
std::vector<LocalDevice> ListLocalDevices(const std::filesystem::path& sysfs);

}  // namespace embedded::attached
