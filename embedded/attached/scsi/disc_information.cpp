#include "embedded/attached/scsi/disc_information.h"

#include <algorithm>

namespace embedded::attached {
namespace {

// Two bytes that are stored apart from each other.
uint16_t Joined(uint8_t high, uint8_t low) {
    return static_cast<uint16_t>(high << 8 | low);
}

// An answer whose first `lengthField` bytes say how many follow: without what comes behind them.
Bytes Trimmed(Bytes answer, size_t lengthField, size_t length) {
    return answer.first(std::min(answer.size(), lengthField + length));
}

}  // namespace

Cdb GetConfiguration(uint16_t allocation) {
    return Cdb(kGetConfiguration).Put16(7, allocation);
}

Result<Configuration> DecodeConfiguration(Bytes answer) {
    constexpr size_t kHeader = 8;
    constexpr size_t kFeatureHeader = 4;
    constexpr uint16_t kProfileList = 0x0000;
    BigEndianReader whole(answer);
    Configuration configuration;
    configuration.currentProfile = whole.Get16(6);
    if (!whole.IsComplete()) return ShortAnswer(kGetConfiguration, answer.size());
    const Bytes features = Trimmed(answer, 4, whole.Get32(0));
    for (size_t at = kHeader; at + kFeatureHeader <= features.size();) {
        BigEndianReader feature(features.subspan(at));
        const size_t length = feature.Get8(3);
        if (length % 4 != 0)
            return BadAnswer(kGetConfiguration, "has a feature of a length that is no multiple of 4");
        if (feature.Get16(0) == kProfileList) {
            const size_t end = std::min(kFeatureHeader + length, feature.GetSize());
            for (size_t entry = kFeatureHeader; entry + 4 <= end; entry += 4) {
                configuration.supportedProfiles.push_back(feature.Get16(entry));
            }
        }
        at += kFeatureHeader + length;
    }
    return configuration;
}

Cdb ReadDiscInformation(uint16_t allocation) {
    return Cdb(kReadDiscInformation).Put16(7, allocation);
}

Result<DiscInformation> DecodeDiscInformation(Bytes answer) {
    BigEndianReader whole(answer);
    BigEndianReader reader(Trimmed(answer, 2, whole.Get16(0)));
    DiscInformation disc;
    disc.isErasable = reader.GetBit(2, 4);
    disc.lastSession = static_cast<SessionStatus>(reader.GetBits(2, 3, 2));
    disc.status = static_cast<DiscStatus>(reader.GetBits(2, 1, 0));
    disc.backgroundFormat = static_cast<BackgroundFormat>(reader.GetBits(7, 1, 0));
    disc.sessions = Joined(reader.Get8(9), reader.Get8(4));
    disc.firstTrackOfLastSession = Joined(reader.Get8(10), reader.Get8(5));
    disc.lastTrack = Joined(reader.Get8(11), reader.Get8(6));
    if (!reader.IsComplete()) return ShortAnswer(kReadDiscInformation, answer.size());
    return disc;
}

Cdb ReadTrackInformation(uint32_t track, uint16_t allocation) {
    constexpr unsigned kByTrackNumber = 1;
    return Cdb(kReadTrackInformation).Put8(1, kByTrackNumber).Put32(2, track).Put16(7, allocation);
}

Result<TrackInformation> DecodeTrackInformation(Bytes answer) {
    constexpr size_t kUpToTrackSize = 28;
    constexpr size_t kUpToLastRecorded = 32;
    constexpr size_t kUpToSessionNumber = 34;
    BigEndianReader whole(answer);
    BigEndianReader reader(Trimmed(answer, 2, whole.Get16(0)));
    if (reader.GetSize() < kUpToTrackSize) return ShortAnswer(kReadTrackInformation, answer.size());
    // Drives that follow an older edition of the standard send fewer bytes.
    const bool hasHighBytes = reader.GetSize() >= kUpToSessionNumber;
    TrackInformation track;
    track.track = Joined(hasHighBytes ? reader.Get8(32) : uint8_t{0}, reader.Get8(2));
    track.session = Joined(hasHighBytes ? reader.Get8(33) : uint8_t{0}, reader.Get8(3));
    track.isDamaged = reader.GetBit(5, 5);
    track.isBlank = reader.GetBit(6, 6);
    // The track mode is the Q sub-channel's control field; bit 2 marks data.
    track.isAudio = !reader.GetBit(5, 2);
    track.dataMode = reader.GetBits(6, 3, 0);
    track.start = reader.Get32(8);
    if (reader.GetBit(7, 0)) track.nextWritable = reader.Get32(12);
    track.freeBlocks = reader.Get32(16);
    track.size = reader.Get32(24);
    if (reader.GetBit(7, 1) && reader.GetSize() >= kUpToLastRecorded) track.lastRecorded = reader.Get32(28);
    return track;
}

}  // namespace embedded::attached
