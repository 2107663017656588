#pragma once

#include <memory>

#include "embedded/jukebox/physical_jukebox.h"

namespace embedded::attached {

// A changer and its drives, spoken to over SCSI. Drives are opened when they are needed. Throws a Refusal
// when the changer does not answer or is another device than the one that was attached.
std::unique_ptr<PhysicalJukebox> OpenScsiJukebox(const JukeboxAddress& address);

}  // namespace embedded::attached
