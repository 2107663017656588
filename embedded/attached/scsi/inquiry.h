#pragma once

#include <string>
#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// Peripheral device types (SPC-4, table 151).
enum class DeviceType : uint8_t {
    Disk = 0x00,
    Optical = 0x05,  // CD, DVD, BD
    OpticalMemory = 0x07,
    Changer = 0x08,
    Controller = 0x0C,
    None = 0x1F,
};

// SPC-4, 6.6. The texts are as the device sent them, without padding.
struct InquiryData {
    DeviceType type = DeviceType::None;
    uint8_t qualifier = 0;  // 0: the device is there; 1: it could be, but is not; 3: there can be none
    bool isRemovable = false;
    std::string vendor;
    std::string product;
    std::string revision;
};
Cdb Inquiry(uint16_t allocation);
Result<InquiryData> DecodeInquiry(Bytes answer);

// Vital product data page 80h (SPC-4, 7.8.15).
Cdb InquireSerialNumber(uint16_t allocation);
Result<std::string> DecodeSerialNumber(Bytes answer);

// A designator of vital product data page 83h (SPC-4, 7.8.5).
struct Designator {
    uint8_t codeSet = 0;      // 1 binary, 2 ASCII, 3 UTF-8
    uint8_t type = 0;         // 0 vendor's own, 1 T10 vendor, 2 EUI-64, 3 NAA, 8 SCSI name
    uint8_t association = 0;  // 0 the logical unit, 1 the port, 2 the target device
    std::vector<uint8_t> bytes;

    bool operator==(const Designator&) const = default;
};
Cdb InquireIdentification(uint16_t allocation);
Result<std::vector<Designator>> DecodeIdentification(Bytes answer);

}  // namespace embedded::attached
