#pragma once

#include <vector>

#include "embedded/model/farm.h"
#include "tools/foreign/copy_log.h"
#include "tools/foreign/foreign_service.h"
#include "tools/foreign/volume_copy.h"

namespace embedded::tools {

// Reads the jukeboxes with their drives, magazines and media. A drive or magazine that cannot be read keeps
// its number, as a disabled drive or an absent magazine; volumes that were not copied are left out of the
// sides.
std::vector<FarmJukebox> CopyJukeboxes(const ForeignService& service, const VolumeCopy& volumes,
                                       CopyLog& log);

}  // namespace embedded::tools
