#include "embedded/attached/disc/block_writing.h"

#include <algorithm>

#include "embedded/attached/scsi/block_transfer.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

// Bytes of one WRITE.
constexpr uint64_t kWriteBytes = 65536;

Result<std::vector<uint8_t>> BytesOf(const SparseFile& file, const BlockRun& run, uint32_t blockSize) {
    std::vector<uint8_t> bytes(size_t{run.count} * blockSize);
    const auto read = file.Read(run.first * blockSize, bytes);
    if (!read) return read.GetError();
    return bytes;
}

}  // namespace

std::vector<BlockRun> RunsOf(const std::vector<SparseFile::Extent>& extents, uint64_t blocks,
                             uint32_t blockSize) {
    const uint64_t perRun = kWriteBytes / blockSize;
    std::vector<BlockRun> runs;
    uint64_t next = 0;
    for (const SparseFile::Extent& extent : extents) {
        const uint64_t end = std::min(blocks, (extent.end + blockSize - 1) / blockSize);
        const uint64_t start = extent.start / blockSize / perRun * perRun;
        for (uint64_t first = std::max(next, start); first < end; first += perRun) {
            runs.push_back({first, static_cast<uint32_t>(std::min(perRun, blocks - first))});
            next = first + perRun;
        }
    }
    return runs;
}

Result<Nothing> WriteRuns(DiscChange& change, const SparseFile& file, const std::vector<BlockRun>& runs,
                          uint32_t blockSize) {
    size_t written = 0;
    for (const BlockRun& run : runs) {
        change.Tell(DiscStep::Writing, written++, runs.size());
        const auto bytes = BytesOf(file, run, blockSize);
        if (!bytes) return bytes.GetError();
        const Cdb cdb = Write10(static_cast<uint32_t>(run.first), static_cast<uint16_t>(run.count));
        auto done = change.Do(cdb, change.GetLimits().write, *bytes);
        if (!done) return done;
    }
    change.Tell(DiscStep::Writing, 1, 1);
    return change.Do(SynchronizeCache(), change.GetLimits().synchronize);
}

Result<Nothing> CompareRuns(DiscChange& change, const SparseFile& file, const std::vector<BlockRun>& runs,
                            uint32_t blockSize) {
    size_t compared = 0;
    for (const BlockRun& run : runs) {
        change.Tell(DiscStep::Comparing, compared++, runs.size());
        const auto bytes = BytesOf(file, run, blockSize);
        if (!bytes) return bytes.GetError();
        const Cdb cdb = Read10(static_cast<uint32_t>(run.first), static_cast<uint16_t>(run.count));
        const auto read = change.GetDrive().Ask(cdb, bytes->size(), change.GetLimits().read);
        if (!read) return read.GetError();
        if (read->size() < bytes->size()) {
            return Error{
                ErrorKind::BadAnswer, change.GetDrive().GetName() + " reads only a part of the blocks", {}};
        }
        const auto different = std::ranges::mismatch(*read, *bytes).in1 - read->begin();
        if (different != static_cast<ptrdiff_t>(bytes->size())) {
            const uint64_t block = run.first + static_cast<uint64_t>(different) / blockSize;
            return change.Condemn("reads block " + std::to_string(block) +
                                  " back other than it was written; use another disc");
        }
    }
    change.Tell(DiscStep::Comparing, 1, 1);
    return Nothing();
}

}  // namespace embedded::attached
