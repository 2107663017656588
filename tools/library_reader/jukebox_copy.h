#pragma once

#include <vector>

#include "embedded/model/farm.h"
#include "tools/library_reader/copy_log.h"
#include "tools/library_reader/library_service.h"
#include "tools/library_reader/volume_copy.h"

namespace embedded::tools {

// Reads the jukeboxes with their drives, magazines and media. A drive or magazine that cannot be read keeps
// its number, as a disabled drive or an absent magazine; volumes that were not copied are left out of the
// sides.
std::vector<FarmJukebox> CopyJukeboxes(const LibraryService& service, VolumeCopier& volumes, CopyLog& log);

}  // namespace embedded::tools
