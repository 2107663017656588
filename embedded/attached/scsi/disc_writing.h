#pragma once

#include <array>

#include "embedded/attached/scsi/capacity.h"
#include "embedded/attached/scsi/medium_control.h"

namespace embedded::attached {

// MMC-6, 6.3. What Close... means depends on the kind of disc.
enum class CloseFunction : uint8_t {
    Track = 1,
    Session = 2,           // of most discs: so that more can be added
    FinalizeDvdPlusR = 5,  // with a smallest lead-out
    Finalize = 6,
};
// `track` counts from 1; it means something with CloseFunction::Track only.
Cdb CloseTrackSession(CloseFunction function, uint16_t track, Answer answer);

// MMC-6, 6.2: CD-RW and DVD-RW.
enum class BlankExtent : uint8_t { Disc = 0, Minimal = 1 };
Cdb Blank(BlankExtent extent, Answer answer);

// SBC-3: FORMAT UNIT, without parameters: the whole of a direct-access medium in its present format.
Cdb FormatUnit();

// MMC-6, 6.4: in one of the formats that the drive has offered. The parameters go with the command.
Cdb FormatUnitAs();
std::array<uint8_t, 12> FormatParameters(const FormatCapacities::Choice& choice, Answer answer);

}  // namespace embedded::attached
