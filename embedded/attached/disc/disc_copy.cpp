#include "embedded/attached/disc/disc_copy.h"

#include <algorithm>

#include "embedded/attached/scsi/block_transfer.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

// Bytes of one READ.
constexpr uint32_t kReadBytes = 65536;

// After so many blocks that cannot be read, which cost a drive many seconds each, the rest is not tried.
constexpr size_t kMostUnreadable = 4;

constexpr uint8_t kCopyProtected = 0x6F;

// Of the disc, not of the drive: the block cannot be read, was never written, or lies behind the last one.
bool IsOfTheDisc(const Error& error) {
    if (!error.sense) return false;
    const uint8_t key = error.sense->key;
    return key == sense_key::kMediumError || key == sense_key::kBlankCheck ||
           key == sense_key::kIllegalRequest;
}

}  // namespace

Result<DiscCopy> DiscCopy::Create(Device& drive, const Medium& medium, const DiscLimits& limits) {
    auto file = SparseFile::Create(medium.readable * medium.blockSize);
    if (!file) return file.GetError();
    return DiscCopy(drive, medium, limits, std::move(*file));
}

DiscCopy::DiscCopy(Device& drive, const Medium& medium, const DiscLimits& limits, SparseFile file)
    : m_drive(&drive),
      m_limits(&limits),
      m_blockSize(medium.blockSize),
      m_blocks(medium.readable),
      m_file(std::move(file)) {}

Result<DiscCopy::Reading> DiscCopy::Fetch(uint64_t first, uint64_t count) {
    Reading reading;
    const uint32_t perRun = kReadBytes / m_blockSize;
    const uint64_t end = std::min(m_blocks, first + std::min(count, m_blocks));
    for (uint64_t run = first / perRun; run * perRun < end; ++run) {
        if (m_fetched.contains(run)) continue;
        const uint64_t start = run * perRun;
        const auto length = static_cast<uint32_t>(std::min<uint64_t>(perRun, m_blocks - start));
        const auto fetched = FetchRun(start, length, reading);
        if (!fetched) return fetched.GetError();
        if (reading.isProtected || reading.unreadable >= kMostUnreadable) break;
        m_fetched.insert(run);
    }
    return reading;
}

Result<Nothing> DiscCopy::FetchRun(uint64_t first, uint32_t count, Reading& reading) {
    const size_t length = size_t{count} * m_blockSize;
    const Cdb cdb = Read10(static_cast<uint32_t>(first), static_cast<uint16_t>(count));
    const auto bytes = m_drive->Ask(cdb, length, m_limits->read);
    if (bytes && bytes->size() == length) return Keep(first, *bytes, reading);
    if (!bytes && !IsOfTheDisc(bytes.GetError())) return bytes.GetError();
    return FetchSingly(first, count, reading);
}

// Block by block, for the sake of those that can be read.
Result<Nothing> DiscCopy::FetchSingly(uint64_t first, uint32_t count, Reading& reading) {
    for (uint64_t block = first; block < first + count; ++block) {
        const auto bytes = m_drive->Ask(Read10(static_cast<uint32_t>(block), 1), m_blockSize, m_limits->read);
        if (bytes) {
            if (bytes->size() < m_blockSize) {
                return Error{ErrorKind::BadAnswer, m_drive->GetName() + " reads only a part of a block", {}};
            }
            const auto kept = Keep(block, *bytes, reading);
            if (!kept) return kept.GetError();
            continue;
        }
        const Error& error = bytes.GetError();
        if (!IsOfTheDisc(error)) return error;
        reading.isProtected = reading.isProtected || error.sense->asc == kCopyProtected;
        // Nothing was written here, and the rest of the run will be no different.
        if (error.sense->key != sense_key::kMediumError) break;
        if (++reading.unreadable >= kMostUnreadable) break;
    }
    return Nothing();
}

Result<Nothing> DiscCopy::Keep(uint64_t first, Bytes bytes, Reading& reading) {
    const bool isZero = std::ranges::all_of(bytes, [](uint8_t byte) { return byte == 0; });
    if (isZero) return Nothing();
    reading.hasData = true;
    return m_file.Write(first * m_blockSize, bytes);
}

std::vector<uint8_t> DiscCopy::GetBytes(uint64_t at, size_t length) {
    std::vector<uint8_t> bytes(length);
    const uint64_t size = m_blocks * m_blockSize;
    if (at >= size || length > size - at) return bytes;
    const uint64_t first = at / m_blockSize;
    (void)Fetch(first, (at + length - 1) / m_blockSize - first + 1);
    (void)m_file.Read(at, bytes);
    return bytes;
}

}  // namespace embedded::attached
