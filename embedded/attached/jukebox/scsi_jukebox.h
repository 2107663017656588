#pragma once

#include <functional>
#include <memory>

#include "embedded/attached/device/waiting.h"
#include "embedded/attached/transport/iscsi_address.h"
#include "embedded/attached/transport/transport.h"
#include "embedded/jukebox/physical_jukebox.h"

namespace embedded::attached {

// A changer and its drives, spoken to over SCSI. Drives are opened when they are needed. Throws a Refusal
// when the changer does not answer or is another device than the one that was attached.
std::unique_ptr<PhysicalJukebox> OpenScsiJukebox(const JukeboxAddress& address);

// The same with transports and a clock of the caller; the clock outlives the jukebox.
using TransportOpener =
    std::function<Result<std::unique_ptr<Transport>>(const std::string& address, const IscsiLogin& login)>;
std::unique_ptr<PhysicalJukebox> OpenScsiJukeboxWith(const JukeboxAddress& address, TransportOpener open,
                                                     Waiting& waiting);

}  // namespace embedded::attached
