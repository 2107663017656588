#include "embedded/attached/scsi/block_transfer.h"

namespace embedded::attached {

Cdb Read10(uint32_t firstBlock, uint16_t count) {
    return Cdb(kRead10).Put32(2, firstBlock).Put16(7, count);
}

Cdb Read12(uint32_t firstBlock, uint32_t count) {
    return Cdb(kRead12).Put32(2, firstBlock).Put32(6, count);
}

Cdb Write10(uint32_t firstBlock, uint16_t count) {
    return Cdb(kWrite10).Put32(2, firstBlock).Put16(7, count);
}

Cdb Write12(uint32_t firstBlock, uint32_t count) {
    return Cdb(kWrite12).Put32(2, firstBlock).Put32(6, count);
}

Cdb SynchronizeCache() {
    return Cdb(kSynchronizeCache);
}

}  // namespace embedded::attached
