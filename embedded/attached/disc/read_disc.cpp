#include <algorithm>

#include "embedded/attached/disc/disc.h"
#include "embedded/attached/disc/disc_copy.h"
#include "embedded/attached/disc/file_system.h"
#include "embedded/attached/disc/medium.h"
#include "embedded/attached/disc/noise.h"
#include "embedded/attached/disc/udf_volume.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

// The first bytes that are looked at for noise.
constexpr size_t kSampleBytes = 65536;

// What the drive cannot make out: a medium of a kind that it does not know, an unreadable lead-in.
bool IsUnreadableDisc(const Error& error) {
    constexpr uint8_t kIncompatibleMedium = 0x30;
    constexpr uint8_t kBadTableOfContents = 0x57;
    if (!error.sense) return false;
    const SenseCode& code = *error.sense;
    return code.asc == kIncompatibleMedium || code.asc == kBadTableOfContents ||
           code.key == sense_key::kMediumError;
}

Finalization FinalizationOf(const Medium& medium) {
    if (medium.recording == Recording::Random) return Finalization::NotFinalized;
    const bool isOpen = medium.status == DiscStatus::Empty || medium.status == DiscStatus::Incomplete;
    if (medium.recording == Recording::Sequential && medium.profile == nullptr)
        return Finalization::NotFinalized;
    return isOpen ? Finalization::NotFinalized : Finalization::Closed;
}

DiscDescription Describe(const Medium& medium) {
    DiscDescription disc;
    disc.mediumType = medium.type;
    disc.finalization = FinalizationOf(medium);
    disc.isAppendable = medium.recording == Recording::Sequential && medium.status == DiscStatus::Incomplete;
    disc.isSequential = medium.recording == Recording::Sequential;
    disc.isWritable = medium.IsWritable();
    disc.blockSize = medium.blockSize;
    disc.totalBytes = medium.blocks * medium.blockSize;
    disc.usedBytes = disc.totalBytes;
    return disc;
}

// The volume space size of the primary volume descriptor (ECMA-119, 8.4.8 and 8.4.13), in bytes.
uint64_t IsoBytes(DiscCopy& copy, uint64_t start) {
    constexpr uint64_t kDescriptor = uint64_t{16} * 2048;
    const auto bytes = copy.GetBytes(start + kDescriptor, 132);
    const auto little = [&](size_t at) { return bytes[at] | unsigned{bytes[at + 1]} << 8U; };
    const uint64_t blocks = little(80) | uint64_t{little(82)} << 16U;
    return blocks * little(128);
}

void AddFileSystem(const FoundContent& found, const Medium& medium, DiscCopy& copy, DiscDescription& disc) {
    const uint64_t start = medium.sessionStart * medium.blockSize;
    disc.content = DiscContent::FileSystem;
    disc.fileSystem = found.type;
    disc.label = found.label;
    disc.uuid = found.uuid;
    const uint64_t space = disc.totalBytes;
    if (found.type == "iso9660") {
        disc.fileSystem = "ISO 9660";
        const uint64_t size = start + IsoBytes(copy, start);
        if (size > start && size < space) disc.totalBytes = disc.usedBytes = size;
    }
    if (found.type == "udf") {
        disc.fileSystem = found.version.empty() ? "UDF" : "UDF " + found.version;
        const ByteSource source = [&](uint64_t at, size_t length) { return copy.GetBytes(at, length); };
        const auto volume = ReadUdfVolume(source, start, medium.blockSize);
        if (volume && volume->hasVirtualAllocationTable) {
            disc.fileSystem += " seq";
            disc.isSequential = true;
        } else if (volume && volume->totalBytes != 0 && volume->totalBytes <= space) {
            disc.totalBytes = volume->totalBytes;
            disc.usedBytes = volume->totalBytes - volume->freeBytes;
        }
    }
    if (disc.isAppendable) {
        disc.totalBytes = space;
        disc.usedBytes = uint64_t{medium.nextWritable} * medium.blockSize;
    }
}

Result<Nothing> AddContent(DiscCopy& copy, const Medium& medium, DiscDescription& disc) {
    const uint64_t count = medium.GetSignatureBlocks();
    auto reading = copy.Fetch(0, count);
    if (!reading) return reading.GetError();
    if (medium.sessionStart != 0) {
        const auto session = copy.Fetch(medium.sessionStart, count);
        if (!session) return session.GetError();
        reading->unreadable += session->unreadable;
        reading->hasData = reading->hasData || session->hasData;
    }
    const auto end = copy.Fetch(medium.readable - std::min(medium.readable, count), count);
    if (!end) return end.GetError();

    const auto found = FindContent(copy.GetFile(), medium.sessionStart * medium.blockSize);
    if (!found) return found.GetError();
    if (*found && !(*found)->isEncrypted) {
        AddFileSystem(**found, medium, copy, disc);
    } else if (*found || reading->isProtected) {
        disc.content = DiscContent::Encrypted;
    } else if (medium.isDamaged || reading->unreadable > 0) {
        disc.content = DiscContent::Damaged;
    } else if (!reading->hasData && !end->hasData) {
        disc.content = DiscContent::Blank;
    } else {
        const auto sample = copy.GetBytes(0, kSampleBytes);
        disc.content = LooksLikeNoise(sample) ? DiscContent::Encrypted : DiscContent::NoFileSystem;
    }
    return Nothing();
}

}  // namespace

Content RecordedContent(DiscContent content) {
    switch (content) {
        case DiscContent::Blank:
            return Content::Blank;
        case DiscContent::FileSystem:
            return Content::FileSystem;
        case DiscContent::Damaged:
            return Content::Bad;
        case DiscContent::NoFileSystem:
        case DiscContent::Audio:
        case DiscContent::Encrypted:
            break;
    }
    return Content::NoFileSystem;
}

Result<DiscDescription> ReadDisc(Device& drive, const DiscLimits& limits) {
    const auto damaged = [](const Error& error) -> Result<DiscDescription> {
        if (!IsUnreadableDisc(error)) return error;
        DiscDescription disc;
        disc.content = DiscContent::Damaged;
        return disc;
    };
    const auto ready = drive.WaitUntilReady(limits.ready);
    if (!ready) return damaged(ready.GetError());
    const auto medium = ReadMedium(drive, limits);
    if (!medium) return damaged(medium.GetError());

    DiscDescription disc = Describe(*medium);
    const bool isRecordable = medium->recording != Recording::None && medium->profile != nullptr;
    const bool isEmpty = medium->isUnformatted || medium->status == DiscStatus::Empty;
    if (isRecordable && isEmpty && !medium->isDamaged) {
        disc.content = DiscContent::Blank;
    } else if (medium->isAudio) {
        disc.content = DiscContent::Audio;
    } else {
        auto copy = DiscCopy::Create(drive, *medium, limits);
        if (!copy) return copy.GetError();
        const auto added = AddContent(*copy, *medium, disc);
        if (!added) return added.GetError();
    }
    if (disc.content == DiscContent::Blank) disc.usedBytes = 0;
    return disc;
}

}  // namespace embedded::attached
