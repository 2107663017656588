#pragma once

#include <vector>

#include "embedded/attached/disc/disc_change.h"
#include "embedded/attached/disc/sparse_file.h"

namespace embedded::attached {

// Consecutive blocks.
struct BlockRun {
    uint64_t first = 0;
    uint32_t count = 0;

    bool operator==(const BlockRun&) const = default;
};

// The runs of 64 KiB, at multiples of it, that extents of bytes touch; the last one ends with the `blocks`
// of the disc. Drives write such runs without reading what lies around them.
std::vector<BlockRun> RunsOf(const std::vector<SparseFile::Extent>& extents, uint64_t blocks,
                             uint32_t blockSize);

// Writes the runs as the file holds them, lets the drive empty its buffer.
Result<Nothing> WriteRuns(DiscChange& change, const SparseFile& file, const std::vector<BlockRun>& runs,
                          uint32_t blockSize);

// Reads the runs back. A difference, or a block that cannot be read, condemns the disc; blocks that the drive
// refuses to read before a session is closed are an error with ILLEGAL REQUEST or BLANK CHECK.
Result<Nothing> CompareRuns(DiscChange& change, const SparseFile& file, const std::vector<BlockRun>& runs,
                            uint32_t blockSize);

}  // namespace embedded::attached
