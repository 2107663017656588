#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "embedded/attached/device/device.h"
#include "embedded/model/farm.h"
#include "embedded/model/media_types.h"

namespace embedded::attached {

// What is on the side of a disc that a drive reads.
enum class DiscContent {
    Blank,
    FileSystem,
    NoFileSystem,  // written, with nothing that is known
    Audio,
    Encrypted,  // or looks so: copy protection, an encrypted container, nothing but noise
    Damaged,    // the blocks that would tell cannot be read, or writing was broken off
};

// How the content is recorded for a side: Bad, Blank, NoFileSystem or FileSystem.
Content RecordedContent(DiscContent content);

// The loaded side of the disc in a drive.
struct DiscDescription {
    uint32_t mediumType = kUnknownMedium;  // as in embedded/model/media_types.h
    DiscContent content = DiscContent::NoFileSystem;
    Finalization finalization = Finalization::Unknown;
    bool isAppendable = false;  // written sequentially, with room for more
    bool isSequential = false;  // the medium is written sequentially, or the file system has a VAT
    bool isWritable = false;    // by this drive, with the write protection as it is

    // With DiscContent::FileSystem: "UDF 2.01", "UDF 1.50 seq" (with a VAT), "ISO 9660", or the word that
    // libblkid has for it.
    std::string fileSystem;
    // As the disc holds them; untrusted bytes, empty when it holds none.
    std::string label;
    std::string uuid;

    uint32_t blockSize = 0;   // bytes
    uint64_t totalBytes = 0;  // of the file system, or of the medium
    uint64_t usedBytes = 0;   // all of it when the file system does not tell
};

// Time limits. Those of `close`, `blank` and `format` hold for as long as the drive needs in all.
struct DiscLimits {
    std::chrono::milliseconds ready{180'000};  // until a loaded disc can be used
    std::chrono::milliseconds look{30'000};
    std::chrono::milliseconds read{90'000};    // one READ, repeats of the drive included
    std::chrono::milliseconds write{120'000};  // one WRITE
    std::chrono::milliseconds synchronize{600'000};
    std::chrono::milliseconds close{3'600'000};
    std::chrono::milliseconds blank{3 * 3'600'000};
    std::chrono::milliseconds format{6 * 3'600'000};
};

// Waits until the drive is ready and reads what is on the disc. Discs that the drive cannot read are Damaged;
// errors are those of the drive: no disc, no answer, a fault.
Result<DiscDescription> ReadDisc(Device& drive, const DiscLimits& limits = {});

// The types of media, as in embedded/model/media_types.h, that the drive can write. No disc is needed.
Result<std::vector<uint32_t>> ReadWritableTypes(Device& drive);

}  // namespace embedded::attached
