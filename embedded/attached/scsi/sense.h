#pragma once

#include "embedded/attached/base/big_endian.h"
#include "embedded/attached/base/result.h"

namespace embedded::attached {

// Sense keys (SPC-4, table 48).
namespace sense_key {
constexpr uint8_t kNoSense = 0x0;
constexpr uint8_t kRecoveredError = 0x1;
constexpr uint8_t kNotReady = 0x2;
constexpr uint8_t kMediumError = 0x3;
constexpr uint8_t kHardwareError = 0x4;
constexpr uint8_t kIllegalRequest = 0x5;
constexpr uint8_t kUnitAttention = 0x6;
constexpr uint8_t kDataProtect = 0x7;
constexpr uint8_t kBlankCheck = 0x8;
constexpr uint8_t kAbortedCommand = 0xB;
constexpr uint8_t kVolumeOverflow = 0xD;
constexpr uint8_t kMiscompare = 0xE;
constexpr uint8_t kCompleted = 0xF;
}  // namespace sense_key

struct Sense {
    SenseCode code;
    bool isDeferred = false;              // speaks of an earlier command; the present one was not carried out
    std::optional<uint64_t> information;  // for reads and writes: the block concerned
    std::optional<uint16_t> progress;     // of what the device is busy with, in 65536ths
};

// Sense data in fixed or descriptor format (SPC-4, 4.5.2 and 4.5.3). Nothing when there are none or in no
// format that the standard knows.
std::optional<Sense> DecodeSense(Bytes data);

// "5/3B/0E": key, code and qualifier in hexadecimal.
std::string SenseText(const SenseCode& code);

}  // namespace embedded::attached
