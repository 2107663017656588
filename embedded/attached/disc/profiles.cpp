#include "embedded/attached/disc/profiles.h"

#include <algorithm>

#include "embedded/model/media_types.h"

namespace embedded::attached {
namespace {

using enum Recording;

constexpr bool kBlank = true;
constexpr bool kParameters = true;

// Profiles: MMC-6, table 95. Types: embedded/model/media_types.cpp.
constexpr Profile kProfiles[] = {
    {0x0002, 20, Random, false, false},            // removable disk
    {0x0003, 20, Random, false, false},            // magneto-optical, erasable
    {0x0004, 21, Sequential, false, false},        // optical, write once
    {0x0005, 20, Random, false, false},            // AS-MO
    {0x0008, 0, None, false, false},               // CD-ROM
    {0x0009, 1, Sequential, false, kParameters},   // CD-R
    {0x000A, 2, Sequential, kBlank, kParameters},  // CD-RW
    {0x0010, 4, None, false, false},               // DVD-ROM
    {0x0011, 5, Sequential, false, kParameters},   // DVD-R, sequential
    {0x0012, 12, Random, false, false},            // DVD-RAM
    {0x0013, 7, Random, false, false},             // DVD-RW, restricted overwrite
    {0x0014, 6, Sequential, kBlank, kParameters},  // DVD-RW, sequential
    {0x0015, 16, Sequential, false, kParameters},  // DVD-R dual layer, sequential
    {0x0016, 16, Sequential, false, kParameters},  // DVD-R dual layer, layer jump
    {0x0017, 6, Sequential, kBlank, kParameters},  // DVD-RW dual layer
    {0x001A, 10, Random, false, false},            // DVD+RW
    {0x001B, 9, Sequential, false, false},         // DVD+R
    {0x002A, 10, Random, false, false},            // DVD+RW dual layer
    {0x002B, 17, Sequential, false, false},        // DVD+R dual layer
    {0x0040, kUnknownMedium, None, false, false},  // BD-ROM
    {0x0041, 27, Sequential, false, false},        // BD-R, sequential
    {0x0042, 27, Random, false, false},            // BD-R, random
    {0x0043, 26, Random, false, false},            // BD-RE
};

// SBC-3, 6.4.1: the types of media of optical memory devices.
constexpr uint8_t kReadOnly = 0x01;
constexpr uint8_t kWriteOnce = 0x02;

}  // namespace

const Profile* FindProfile(uint16_t number) {
    const auto* found = std::ranges::find(kProfiles, number, &Profile::number);
    return found == std::end(kProfiles) ? nullptr : found;
}

std::span<const Profile> AllProfiles() {
    return kProfiles;
}

uint32_t MediumTypeOf(uint8_t modeMediumType, uint32_t blockSize, uint64_t bytes) {
    if (modeMediumType == kReadOnly) return kUnknownMedium;
    constexpr uint32_t kUdoBlock = 8192;
    constexpr uint64_t kLargestMagnetoOptical = 9'200'000'000;
    const bool isWriteOnce = modeMediumType == kWriteOnce;
    if (blockSize == kUdoBlock) return isWriteOnce ? 25 : 24;
    if (bytes > kLargestMagnetoOptical) return isWriteOnce ? 23 : 22;
    return isWriteOnce ? 21 : 20;
}

}  // namespace embedded::attached
