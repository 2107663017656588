#pragma once

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// Consecutive logical blocks. A count of 0 transfers nothing.
// READ and WRITE: SBC-3, 5.8, 5.9, 5.32, 5.33; MMC-6, 6.20, 6.45.
Cdb Read10(uint32_t firstBlock, uint16_t count);
Cdb Read12(uint32_t firstBlock, uint32_t count);
Cdb Write10(uint32_t firstBlock, uint16_t count);
Cdb Write12(uint32_t firstBlock, uint32_t count);

// SBC-3, 5.26: the device writes down whatever it still has in its buffer.
Cdb SynchronizeCache();

}  // namespace embedded::attached
