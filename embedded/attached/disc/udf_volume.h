#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace embedded::attached {

// Reads `length` bytes of a volume from byte `at` on: always so many, zeros where there are none.
using ByteSource = std::function<std::vector<uint8_t>(uint64_t at, size_t length)>;

// What the descriptors of a UDF volume (ECMA-167, UDF 2.60) say of its space.
struct UdfVolume {
    bool hasVirtualAllocationTable = false;  // written sequentially
    // Bytes of the partitions whose size and free space the integrity descriptor tells. Both 0 when it tells
    // none; the free ones are never more than all.
    uint64_t totalBytes = 0;
    uint64_t freeBytes = 0;
};

// `start` is the first byte of the session that holds the volume. Nothing when there is no UDF volume, or
// when its descriptors contradict the standard.
std::optional<UdfVolume> ReadUdfVolume(const ByteSource& source, uint64_t start, uint32_t blockSize);

}  // namespace embedded::attached
