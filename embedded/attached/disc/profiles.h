#pragma once

#include <cstdint>
#include <span>

#include "embedded/attached/scsi/mode_pages.h"

namespace embedded::attached {

// How a drive writes a medium.
enum class Recording {
    None,        // not at all
    Sequential,  // each block once, one behind the other, until the disc is closed or blanked
    Random,      // any block at any time
};

namespace profile_number {
constexpr uint16_t kCdRom = 0x0008;
constexpr uint16_t kCdRw = 0x000A;
constexpr uint16_t kDvdRam = 0x0012;
constexpr uint16_t kDvdRwRestrictedOverwrite = 0x0013;
constexpr uint16_t kDvdPlusRw = 0x001A;
constexpr uint16_t kDvdPlusRwDualLayer = 0x002A;
}  // namespace profile_number

// What a profile of MMC-6, table 95, means.
struct Profile {
    uint16_t number;
    uint32_t mediumType;  // as in embedded/model/media_types.h
    Recording recording;
    bool isBlankable;         // by BLANK
    bool hasWriteParameters;  // mode page 05h says how it is written
};

// Null for a number that is not in the table.
const Profile* FindProfile(uint16_t number);
std::span<const Profile> AllProfiles();

// Magneto-optical and UDO media are told apart by the medium type of mode data (SBC-3, 6.4.1) and by the size
// of their blocks and sides. 254 for read-only ones.
uint32_t MediumTypeOf(uint8_t modeMediumType, uint32_t blockSize, uint64_t bytes);

}  // namespace embedded::attached
