#pragma once

#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// SPC-4, 6.33: all logical units but the well-known ones.
Cdb ReportLuns(uint32_t allocation);

struct LunList {
    std::vector<uint16_t>
        luns;  // in single-level peripheral or flat addressing (SAM-5, 4.7); others are left out
    uint32_t length =
        0;  // bytes of the whole list, 8 for each unit, as the device says; the answer may hold fewer
};
Result<LunList> DecodeReportLuns(Bytes answer);

}  // namespace embedded::attached
