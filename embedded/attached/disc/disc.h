#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
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

// Time limits. Those of `close`, `blank` and `format` hold for all that the drive needs when it does not tell
// how far it is; one that does may take longer, but not stand still for longer than `standstill`.
struct DiscLimits {
    std::chrono::milliseconds ready{180'000};  // until a loaded disc can be used
    std::chrono::milliseconds look{30'000};
    std::chrono::milliseconds read{90'000};    // one READ, repeats of the drive included
    std::chrono::milliseconds write{120'000};  // one WRITE
    std::chrono::milliseconds synchronize{600'000};
    std::chrono::milliseconds close{3'600'000};
    std::chrono::milliseconds blank{3 * 3'600'000};
    std::chrono::milliseconds format{6 * 3'600'000};
    std::chrono::milliseconds standstill{1'800'000};
};

// Waits until the drive is ready and reads what is on the disc. Discs that the drive cannot read are Damaged;
// errors are those of the drive: no disc, no answer, a fault.
Result<DiscDescription> ReadDisc(Device& drive, const DiscLimits& limits = {});

// The types of media, as in embedded/model/media_types.h, that the drive can write. No disc is needed.
Result<std::vector<uint32_t>> ReadWritableTypes(Device& drive, const DiscLimits& limits = {});

// What a change of a disc is busy with.
enum class DiscStep { Preparing, Writing, Comparing, Closing };

// Called many times: `percent` of this step, 0 to 100. Drives that tell nothing leave it at 0.
using DiscProgress = std::function<void(DiscStep step, unsigned percent)>;

// What a side is after a change was asked for.
enum class SideAfter {
    Done,       // as it was asked for, and verified
    Untouched,  // as before: nothing was written
    Unknown,    // only reading it will tell
    Bad,        // the disc cannot be written, or reads back other than it was written
};
struct [[nodiscard]] ChangeResult {
    SideAfter side = SideAfter::Done;
    std::optional<Error> error;  // unless it is done

    explicit operator bool() const { return side == SideAfter::Done; }
};

struct FormatOptions {
    std::string label;          // UTF-8
    std::string udfRevision;    // "1.02", "1.50", "2.00" or "2.01"; empty: 1.50 with a VAT, else 2.01
    bool isSequential = false;  // a VAT also on media that are written in any order
};

// Writes an empty UDF file system and compares every block that it has written. A written disc must be one
// that can be blanked or overwritten. Discs that are written sequentially stay appendable where the drive can
// read them so; else the session is closed.
ChangeResult FormatDisc(Device& drive, const FormatOptions& options, const DiscLimits& limits = {},
                        const DiscProgress& progress = {});

// Quick: no file system is found any more, but data may be. Whole: nothing is left.
enum class EraseExtent { Quick, Whole };

// BLANK for CD-RW and DVD-RW; other rewritable media are overwritten with zeros.
ChangeResult EraseDisc(Device& drive, EraseExtent extent, const DiscLimits& limits = {},
                       const DiscProgress& progress = {});

// Closes a disc that is written sequentially, so that nothing can be added. A closed one is done already, and
// so is a read-only one.
ChangeResult FinalizeDisc(Device& drive, const DiscLimits& limits = {}, const DiscProgress& progress = {});

}  // namespace embedded::attached
