#include "embedded/attached/disc/medium.h"

#include <algorithm>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/scsi/capacity.h"
#include "embedded/attached/scsi/inquiry.h"
#include "embedded/attached/scsi/mode_pages.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

constexpr uint16_t kInquiryLength = 96;
constexpr uint16_t kConfigurationLength = 1024;
constexpr uint16_t kDiscInformationLength = 34;
constexpr uint16_t kTrackInformationLength = 48;
constexpr uint32_t kCapacity16Length = 32;

// The usual sector of CD, DVD and BD.
constexpr uint32_t kSector = 2048;

// Block addresses have 32 bits.
constexpr uint64_t kMostBlocks = uint64_t{1} << 32U;

bool IsRefused(const Error& error) {
    return error.sense && error.sense->key == sense_key::kIllegalRequest;
}

template <typename Value>
Result<Value> Query(Device& drive, const Cdb& cdb, size_t length, const DiscLimits& limits,
                    Result<Value> (*decode)(Bytes)) {
    const auto answer = drive.Ask(cdb, length, limits.look);
    if (!answer) return answer.GetError();
    auto value = decode(*answer);
    if (!value) return drive.Named(value.GetError());
    return value;
}

Result<Capacity> ReadCapacity(Device& drive, const DiscLimits& limits) {
    constexpr uint32_t kAskLongCommand = 0xFFFFFFFF;
    auto capacity = Query(drive, ReadCapacity10(), 8, limits, DecodeCapacity10);
    if (capacity && capacity->lastBlock == kAskLongCommand) {
        capacity =
            Query(drive, ReadCapacity16(kCapacity16Length), kCapacity16Length, limits, DecodeCapacity16);
    }
    if (!capacity) return capacity;
    constexpr uint32_t kSmallestBlock = 512;
    constexpr uint32_t kLargestBlock = 32768;
    const uint32_t size = capacity->blockSize;
    const bool isPowerOfTwo = (size & (size - 1)) == 0;
    if (size < kSmallestBlock || size > kLargestBlock || !isPowerOfTwo) {
        return Error{
            ErrorKind::BadAnswer,
            drive.GetName() + " names blocks of " + std::to_string(size) + " bytes, which no disc has",
            {}};
    }
    if (capacity->lastBlock >= kMostBlocks) {
        return Error{ErrorKind::BadAnswer, drive.GetName() + " names more blocks than a disc can have", {}};
    }
    return capacity;
}

// MO and UDO drives are disks to the host, with the kind of medium in the header of their mode data.
Result<Medium> ReadDirectAccessMedium(Device& drive, const DiscLimits& limits) {
    constexpr uint8_t kAllPages = 0x3F;
    constexpr uint8_t kLength = 0xFF;
    const auto capacity = ReadCapacity(drive, limits);
    if (!capacity) return capacity.GetError();
    Medium medium;
    medium.blockSize = capacity->blockSize;
    medium.blocks = capacity->lastBlock + 1;
    medium.readable = medium.blocks;
    const auto answer = drive.Ask(ModeSense6(kAllPages, kLength), kLength, limits.look);
    if (!answer && !IsRefused(answer.GetError())) return answer.GetError();
    uint8_t mediumType = 0;
    if (answer) {
        const auto header = DecodeModeHeader6(*answer);
        if (!header) return drive.Named(header.GetError());
        mediumType = header->mediumType;
        medium.isWriteProtected = header->isWriteProtected;
    }
    medium.type = MediumTypeOf(mediumType, medium.blockSize, medium.blocks * medium.blockSize);
    const MediaType* type = FindMediaType(medium.type);
    if (type == nullptr) return medium;
    medium.recording = type->writing == Writing::Rewritable ? Recording::Random : Recording::Sequential;
    return medium;
}

// Media that are written in any order: the drive says how they are formatted.
Result<Nothing> AddFormat(Device& drive, const DiscLimits& limits, Medium& medium) {
    const auto formats = Query(drive, ReadFormatCapacities(kFormatCapacitiesLength), kFormatCapacitiesLength,
                               limits, DecodeFormatCapacities);
    if (!formats) {
        if (IsRefused(formats.GetError())) return Nothing();
        return formats.GetError();
    }
    if (formats->state != FormatState::Unformatted) return Nothing();
    medium.isUnformatted = true;
    medium.readable = 0;
    medium.blocks = formats->blocks;
    return Nothing();
}

// Media that are written sequentially: how far they are written, and what is free.
Result<Nothing> AddTracks(Device& drive, const DiscLimits& limits, Medium& medium) {
    const auto disc = Query(drive, ReadDiscInformation(kDiscInformationLength), kDiscInformationLength,
                            limits, DecodeDiscInformation);
    if (!disc) return disc.GetError();
    medium.status = disc->status;
    medium.lastSession = disc->lastSession;
    medium.lastTrack = std::max<uint16_t>(disc->lastTrack, 1);
    medium.isDamaged = disc->lastSession == SessionStatus::Damaged;
    const auto last = Query(drive, ReadTrackInformation(medium.lastTrack, kTrackInformationLength),
                            kTrackInformationLength, limits, DecodeTrackInformation);
    if (!last) return last.GetError();
    medium.isDamaged = medium.isDamaged || last->isDamaged;
    if (medium.status == DiscStatus::Empty || medium.status == DiscStatus::Incomplete) {
        medium.nextWritable = last->nextWritable.value_or(last->start);
        medium.freeBlocks = last->freeBlocks;
        medium.hasOpenTrack = last->nextWritable && !last->isBlank;
        medium.blocks = uint64_t{medium.nextWritable} + medium.freeBlocks;
        const bool isOpenSession =
            medium.lastSession == SessionStatus::Incomplete || medium.lastSession == SessionStatus::Damaged;
        if (isOpenSession) medium.readable = std::max<uint64_t>(medium.nextWritable, medium.readable);
    }
    if (medium.status == DiscStatus::Empty) {
        medium.readable = 0;
        return Nothing();
    }
    // The empty session at the end of an appendable disc holds nothing; the one before it begins with the
    // track before.
    uint16_t first = std::max<uint16_t>(disc->firstTrackOfLastSession, 1);
    if (medium.lastSession == SessionStatus::Empty && first > 1) --first;
    const auto track = Query(drive, ReadTrackInformation(first, kTrackInformationLength),
                             kTrackInformationLength, limits, DecodeTrackInformation);
    if (!track) return track.GetError();
    medium.isAudio = track->isAudio && IsCompactDisc(medium);
    if (track->start < medium.readable) medium.sessionStart = track->start;
    return Nothing();
}

Result<Medium> ReadOpticalMedium(Device& drive, const DiscLimits& limits) {
    const auto configuration = Query(drive, GetConfiguration(kConfigurationLength), kConfigurationLength,
                                     limits, DecodeConfiguration);
    if (!configuration) return configuration.GetError();
    Medium medium;
    medium.profile = FindProfile(configuration->currentProfile);
    if (medium.profile != nullptr) {
        medium.type = medium.profile->mediumType;
        medium.recording = medium.profile->recording;
    }
    const auto capacity = ReadCapacity(drive, limits);
    const bool isBlankable = medium.recording != Recording::None;
    if (!capacity && !(isBlankable && capacity.GetError().sense)) return capacity.GetError();
    medium.blockSize = capacity ? capacity->blockSize : kSector;
    medium.readable = capacity ? capacity->lastBlock + 1 : 0;
    medium.blocks = medium.readable;
    const auto added = medium.recording == Recording::Random ? AddFormat(drive, limits, medium)
                                                             : AddTracks(drive, limits, medium);
    if (!added) return added.GetError();
    return medium;
}

}  // namespace

bool IsCompactDisc(const Medium& medium) {
    return medium.profile != nullptr && medium.profile->number >= profile_number::kCdRom &&
           medium.profile->number <= profile_number::kCdRw;
}

uint64_t Medium::GetSignatureBlocks() const {
    // UDF counts in blocks, up to 256 and some descriptors; others in bytes.
    constexpr uint64_t kBlocks = 600;
    constexpr uint64_t kBytes = uint64_t{1} << 20U;
    return std::max(kBlocks, kBytes / std::max<uint64_t>(blockSize, 1));
}

Result<Medium> ReadMedium(Device& drive, const DiscLimits& limits) {
    const auto inquiry = Query(drive, Inquiry(kInquiryLength), kInquiryLength, limits, DecodeInquiry);
    if (!inquiry) return inquiry.GetError();
    switch (inquiry->type) {
        case DeviceType::Optical:
            return ReadOpticalMedium(drive, limits);
        case DeviceType::Disk:
        case DeviceType::OpticalMemory:
            return ReadDirectAccessMedium(drive, limits);
        default:
            return Error{ErrorKind::Refused, drive.GetName() + " is no drive for discs", {}};
    }
}

Result<std::vector<uint32_t>> ReadWritableTypes(Device& drive, const DiscLimits& limits) {
    const auto inquiry = Query(drive, Inquiry(kInquiryLength), kInquiryLength, limits, DecodeInquiry);
    if (!inquiry) return inquiry.GetError();
    std::vector<uint32_t> types;
    if (inquiry->type != DeviceType::Optical) {
        constexpr uint32_t kFirst = 20;
        constexpr uint32_t kLast = 25;
        for (const MediaType& type : AllMediaTypes()) {
            if (type.code >= kFirst && type.code <= kLast) types.push_back(type.code);
        }
        return types;
    }
    const auto configuration = Query(drive, GetConfiguration(kConfigurationLength), kConfigurationLength,
                                     limits, DecodeConfiguration);
    if (!configuration) return configuration.GetError();
    for (const uint16_t number : configuration->supportedProfiles) {
        const Profile* profile = FindProfile(number);
        if (profile == nullptr || profile->recording == Recording::None) continue;
        if (std::ranges::find(types, profile->mediumType) == types.end())
            types.push_back(profile->mediumType);
    }
    return types;
}

}  // namespace embedded::attached
