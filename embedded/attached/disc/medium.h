#pragma once

#include "embedded/attached/disc/disc.h"
#include "embedded/attached/disc/profiles.h"
#include "embedded/attached/scsi/disc_information.h"

namespace embedded::attached {

// The medium in a drive, as the drive sees it. Counts and addresses are in blocks.
struct Medium {
    uint32_t type = kUnknownMedium;
    const Profile* profile = nullptr;  // of drives for CD, DVD and BD; null: a direct-access device
    Recording recording = Recording::None;
    bool isWriteProtected = false;
    bool isUnformatted = false;  // of random-access media: FORMAT UNIT comes first

    uint32_t blockSize = 0;     // bytes
    uint64_t blocks = 0;        // of the whole medium; written and free ones of a sequential medium
    uint64_t readable = 0;      // from the first one on
    uint64_t sessionStart = 0;  // of the last session that holds something

    // Of media that are written sequentially, and of read-only discs.
    DiscStatus status = DiscStatus::Other;
    SessionStatus lastSession = SessionStatus::Complete;
    uint16_t lastTrack = 1;
    uint32_t nextWritable = 0;
    uint32_t freeBlocks = 0;
    bool hasOpenTrack = false;  // the last track is begun, and not closed
    bool isDamaged = false;     // writing was broken off
    bool isAudio = false;       // the last session begins with music

    // How many blocks at the start of a session and at the end of the disc tell which file system there is.
    uint64_t GetSignatureBlocks() const;

    bool IsWritable() const { return recording != Recording::None && !isWriteProtected; }
};

bool IsCompactDisc(const Medium& medium);

// The drive is ready.
Result<Medium> ReadMedium(Device& drive, const DiscLimits& limits);

}  // namespace embedded::attached
