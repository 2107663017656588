#pragma once

#include "tools/farm_diff/change_list.h"
#include "tools/farm_diff/media_matching.h"

namespace embedded::tools {

// What happened to one medium: where it is, and what is on its sides. `findings` learns which volumes that
// explains.
void AddMediumChanges(const MediumPair& pair, VolumeFindings& findings, ChangeList& changes);

// The sides of a medium that belongs to a jukebox that came or went as a whole.
void CoverVolumes(const MediumPair& pair, VolumeFindings& findings);

}  // namespace embedded::tools
