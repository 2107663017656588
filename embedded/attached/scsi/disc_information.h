#pragma once

#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// MMC-6, 6.5. Profiles: MMC-6, table 95. 0 means that there is no medium.
struct Configuration {
    uint16_t currentProfile = 0;
    std::vector<uint16_t> supportedProfiles;  // empty when the answer holds no profile list
};
// All features, from the profile list on.
Cdb GetConfiguration(uint16_t allocation);
Result<Configuration> DecodeConfiguration(Bytes answer);

enum class DiscStatus : uint8_t { Empty = 0, Incomplete = 1, Complete = 2, Other = 3 };
enum class SessionStatus : uint8_t { Empty = 0, Incomplete = 1, Damaged = 2, Complete = 3 };
enum class BackgroundFormat : uint8_t { None = 0, Begun = 1, Running = 2, Done = 3 };

// MMC-6, 6.21. Tracks and sessions count from 1.
struct DiscInformation {
    DiscStatus status = DiscStatus::Empty;
    SessionStatus lastSession = SessionStatus::Empty;
    bool isErasable = false;
    uint16_t sessions = 0;
    uint16_t firstTrackOfLastSession = 0;
    uint16_t lastTrack = 0;
    BackgroundFormat backgroundFormat = BackgroundFormat::None;
};
Cdb ReadDiscInformation(uint16_t allocation);
Result<DiscInformation> DecodeDiscInformation(Bytes answer);

// MMC-6, 6.26. Block addresses and counts are in logical blocks.
struct TrackInformation {
    uint16_t track = 0;
    uint16_t session = 0;
    bool isDamaged = false;
    bool isBlank = false;
    bool isAudio = false;  // of CDs only
    uint8_t dataMode = 0;  // 1 or 2; 0Fh: not known
    uint32_t start = 0;
    std::optional<uint32_t> nextWritable;
    uint32_t freeBlocks = 0;
    uint32_t size = 0;
    std::optional<uint32_t> lastRecorded;
};
// `track` counts from 1; FFh names the track that is not finished.
Cdb ReadTrackInformation(uint32_t track, uint16_t allocation);
Result<TrackInformation> DecodeTrackInformation(Bytes answer);

}  // namespace embedded::attached
