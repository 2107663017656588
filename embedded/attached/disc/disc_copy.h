#pragma once

#include <set>

#include "embedded/attached/disc/medium.h"
#include "embedded/attached/disc/sparse_file.h"

namespace embedded::attached {

// A sparse copy of a disc: as large as what can be read of it, with the blocks that were fetched.
class DiscCopy {
  public:
    // `drive` and `limits` outlive the copy.
    static Result<DiscCopy> Create(Device& drive, const Medium& medium, const DiscLimits& limits);

    // What reading blocks came to.
    struct Reading {
        size_t unreadable = 0;     // blocks that the drive could not read
        bool isProtected = false;  // the drive refuses to read a copy-protected disc
        bool hasData = false;      // some byte is not zero
    };

    // Reads blocks that exist and were not fetched before, and gives up after some that cannot be read.
    // Blocks that were never written count as zeros. An error is one of the drive, not of the disc.
    Result<Reading> Fetch(uint64_t first, uint64_t count);

    const SparseFile& GetFile() const { return m_file; }

    // Bytes of the disc, `length` of them; fetched when they have not been before, zeros when they cannot be.
    std::vector<uint8_t> GetBytes(uint64_t at, size_t length);

  private:
    DiscCopy(Device& drive, const Medium& medium, const DiscLimits& limits, SparseFile file);

    Result<Nothing> FetchRun(uint64_t first, uint32_t count, Reading& reading);
    Result<Nothing> FetchSingly(uint64_t first, uint32_t count, Reading& reading);
    Result<Nothing> Keep(uint64_t first, Bytes bytes, Reading& reading);

    Device* m_drive;
    const DiscLimits* m_limits;
    uint32_t m_blockSize;
    uint64_t m_blocks;
    SparseFile m_file;
    std::set<uint64_t> m_fetched;  // runs of blocks
};

}  // namespace embedded::attached
