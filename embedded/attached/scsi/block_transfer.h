#pragma once

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// Consecutive logical blocks. A count of 0 transfers nothing. SBC-3: READ(10), READ(12), WRITE(10),
// WRITE(12); MMC-6, 6.20, 6.45.
Cdb Read10(uint32_t firstBlock, uint16_t count);
Cdb Read12(uint32_t firstBlock, uint32_t count);
Cdb Write10(uint32_t firstBlock, uint16_t count);
Cdb Write12(uint32_t firstBlock, uint32_t count);

// SBC-3: SYNCHRONIZE CACHE(10). The device writes down what it still has in its buffer.
Cdb SynchronizeCache();

}  // namespace embedded::attached
