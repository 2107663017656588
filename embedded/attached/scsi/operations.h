#pragma once

#include <cstdint>

namespace embedded::attached {

// A SCSI command: operation code, size of its command block in bytes, name in the standards.
struct Operation {
    uint8_t code;
    uint8_t length;
    const char* name;
};

// SPC-4
constexpr Operation kTestUnitReady{0x00, 6, "TEST UNIT READY"};
constexpr Operation kRequestSense{0x03, 6, "REQUEST SENSE"};
constexpr Operation kInquiry{0x12, 6, "INQUIRY"};
constexpr Operation kModeSense6{0x1A, 6, "MODE SENSE(6)"};
constexpr Operation kModeSelect10{0x55, 10, "MODE SELECT(10)"};
constexpr Operation kModeSense10{0x5A, 10, "MODE SENSE(10)"};
constexpr Operation kPersistentReserveIn{0x5E, 10, "PERSISTENT RESERVE IN"};
constexpr Operation kPersistentReserveOut{0x5F, 10, "PERSISTENT RESERVE OUT"};
constexpr Operation kReportLuns{0xA0, 12, "REPORT LUNS"};

// SMC-3
constexpr Operation kInitializeElementStatus{0x07, 6, "INITIALIZE ELEMENT STATUS"};
constexpr Operation kInitializeElementRange{0x37, 10, "INITIALIZE ELEMENT STATUS WITH RANGE"};
constexpr Operation kMoveMedium{0xA5, 12, "MOVE MEDIUM"};
constexpr Operation kReadElementStatus{0xB8, 12, "READ ELEMENT STATUS"};

// SBC-3 and MMC-6
constexpr Operation kFormatUnit{0x04, 6, "FORMAT UNIT"};
constexpr Operation kStartStopUnit{0x1B, 6, "START STOP UNIT"};
constexpr Operation kPreventAllow{0x1E, 6, "PREVENT ALLOW MEDIUM REMOVAL"};
constexpr Operation kReadFormatCapacities{0x23, 10, "READ FORMAT CAPACITIES"};
constexpr Operation kReadCapacity10{0x25, 10, "READ CAPACITY(10)"};
constexpr Operation kRead10{0x28, 10, "READ(10)"};
constexpr Operation kWrite10{0x2A, 10, "WRITE(10)"};
constexpr Operation kSynchronizeCache{0x35, 10, "SYNCHRONIZE CACHE"};
constexpr Operation kGetConfiguration{0x46, 10, "GET CONFIGURATION"};
constexpr Operation kReadDiscInformation{0x51, 10, "READ DISC INFORMATION"};
constexpr Operation kReadTrackInformation{0x52, 10, "READ TRACK INFORMATION"};
constexpr Operation kCloseTrackSession{0x5B, 10, "CLOSE TRACK SESSION"};
constexpr Operation kReadCapacity16{0x9E, 16, "READ CAPACITY(16)"};
constexpr Operation kBlank{0xA1, 12, "BLANK"};
constexpr Operation kRead12{0xA8, 12, "READ(12)"};
constexpr Operation kWrite12{0xAA, 12, "WRITE(12)"};

}  // namespace embedded::attached
