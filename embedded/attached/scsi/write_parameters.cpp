#include "embedded/attached/scsi/write_parameters.h"

namespace embedded::attached {
namespace {

constexpr size_t kParameterHeader = 8;
constexpr size_t kShortestPage = 0x34;

// Multi-session field: whether another session may follow.
constexpr unsigned kNoMoreSessions = 0x00;
constexpr unsigned kMoreSessions = 0xC0;

constexpr uint8_t kMode1Blocks = 8;  // data block type: 2,048 bytes of user data

}  // namespace

Result<std::vector<uint8_t>> WriteParameters(Bytes page, WriteType type, NextSession next) {
    constexpr unsigned kBufferUnderrunFree = 0x40;
    constexpr unsigned kLinkSizeIsValid = 0x20;
    constexpr unsigned kTrackAtOnce = 0x01;
    constexpr unsigned kFixedPackets = 0x20;
    constexpr unsigned kDataTrack = 4;
    constexpr unsigned kDataTrackOfPackets = 5;
    constexpr uint8_t kLinkBlocks = 16;
    BigEndianReader reader(page);
    if (reader.GetBits(0, 5, 0) != kWriteParametersPage || page.size() < kShortestPage) {
        return Error{ErrorKind::BadAnswer,
                     "mode page 05h is too short, it has " + std::to_string(page.size()) + " bytes",
                     {}};
    }
    std::vector<uint8_t> parameters(kParameterHeader);
    parameters.insert(parameters.end(), page.begin(), page.end());
    BigEndianWriter writer(std::span<uint8_t>(parameters).subspan(kParameterHeader));
    const unsigned sessions = next == NextSession::Yes ? kMoreSessions : kNoMoreSessions;
    writer.Put8(0, kWriteParametersPage);
    writer.Put8(4, kMode1Blocks);
    writer.Put8(8, 0);
    if (type == WriteType::TrackAtOnce) {
        writer.Put8(2, static_cast<uint8_t>(kBufferUnderrunFree | kTrackAtOnce));
        writer.Put8(3, static_cast<uint8_t>(sessions | kDataTrack));
    } else {
        writer.Put8(2, static_cast<uint8_t>(kBufferUnderrunFree | kLinkSizeIsValid));
        writer.Put8(3, static_cast<uint8_t>(sessions | kFixedPackets | kDataTrackOfPackets));
        writer.Put8(5, kLinkBlocks);
        writer.Put32(10, kLinkBlocks);
    }
    return parameters;
}

Cdb ModeSelect10(uint16_t length) {
    constexpr unsigned kPageFormat = 0x10;
    return Cdb(kModeSelect10).Put8(1, kPageFormat).Put16(7, length);
}

}  // namespace embedded::attached
