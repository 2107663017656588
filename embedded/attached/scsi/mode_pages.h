#pragma once

#include <array>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// Mode pages of changers (SMC-3, 7.3).
constexpr uint8_t kElementAddressPage = 0x1D;
constexpr uint8_t kTransportGeometryPage = 0x1E;
constexpr uint8_t kDeviceCapabilitiesPage = 0x1F;

// SPC-4, 6.11 and 6.12: the current values of a page, without block descriptors.
Cdb ModeSense6(uint8_t page, uint8_t allocation);
Cdb ModeSense10(uint8_t page, uint16_t allocation);

// The header of an answer (SPC-4, 7.5.4).
struct ModeHeader {
    uint8_t mediumType = 0;
    bool isWriteProtected = false;  // of direct-access devices
};
Result<ModeHeader> DecodeModeHeader6(Bytes answer);

// The same, and its page from the page's first byte on.
struct ModeData {
    uint8_t mediumType = 0;
    bool isWriteProtected = false;  // of direct-access devices
    Bytes page;  // within the answer; as long as the page says, unless the answer ends before
};
Result<ModeData> DecodeModeSense6(Bytes answer, uint8_t page);
Result<ModeData> DecodeModeSense10(Bytes answer, uint8_t page);

struct ElementRange {
    uint16_t first = 0;
    uint16_t count = 0;

    bool Contains(uint16_t address) const { return address >= first && address - first < count; }
    bool operator==(const ElementRange&) const = default;
};

// Page 1Dh (SMC-3, 7.3.4).
struct ElementAddresses {
    ElementRange pickers;
    ElementRange slots;
    ElementRange mailSlots;
    ElementRange drives;
};
Result<ElementAddresses> DecodeElementAddresses(Bytes page);

// Page 1Eh (SMC-3, 7.3.5): whether one of the pickers can turn media over.
Result<bool> DecodeTurnsMedia(Bytes page);

// Page 1Fh (SMC-3, 7.3.3). Bits: 1 picker, 2 slot, 4 mail slot, 8 drive.
struct ChangerCapabilities {
    uint8_t stores = 0;                  // which elements can hold a medium
    std::array<uint8_t, 4> moves{};      // from picker, slot, mail slot, drive: where to
    std::array<uint8_t, 4> exchanges{};  // the same for EXCHANGE MEDIUM
};
Result<ChangerCapabilities> DecodeCapabilities(Bytes page);

}  // namespace embedded::attached
