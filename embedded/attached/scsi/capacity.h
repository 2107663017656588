#pragma once

#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

struct Capacity {
    uint64_t lastBlock = 0;  // address of the last logical block
    uint32_t blockSize = 0;  // bytes
};

// SBC-3: READ CAPACITY(10); MMC-6, 6.23. A last block of FFFFFFFFh tells the host to send READ
// CAPACITY(16).
Cdb ReadCapacity10();
Result<Capacity> DecodeCapacity10(Bytes answer);

// SBC-3: READ CAPACITY(16).
Cdb ReadCapacity16(uint32_t allocation);
Result<Capacity> DecodeCapacity16(Bytes answer);

enum class FormatState : uint8_t { Unformatted = 1, Formatted = 2, NoMedium = 3 };

// MMC-6, 6.24.
struct FormatCapacities {
    FormatState state = FormatState::NoMedium;
    uint32_t blocks = 0;     // of the present format, or the most that there can be
    uint32_t blockSize = 0;  // bytes

    // A format that the medium can be given; for FormatUnit().
    struct Choice {
        uint32_t blocks = 0;
        uint8_t type = 0;        // MMC-6, table 470: 00h full, 01h DVD-RAM, 26h DVD+RW, 30h and 31h BD-RE ...
        uint32_t parameter = 0;  // its meaning depends on the type

        bool operator==(const Choice&) const = default;
    };
    std::vector<Choice> choices;
};
// Bytes of the answer at most.
inline constexpr uint16_t kFormatCapacitiesLength = 252;
Cdb ReadFormatCapacities(uint16_t allocation);
Result<FormatCapacities> DecodeFormatCapacities(Bytes answer);

}  // namespace embedded::attached
