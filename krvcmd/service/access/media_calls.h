#pragma once

#include <cstdint>
#include <string>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// One call to the library each: what moves, rewrites, switches and renames items. The keys are
// zero-based (makers in keys.h).

Status ImportMedium(const SlotKey& key);
Status ExportMedium(const SlotKey& key);
Status ScanMedium(const SideKey& key);

Status EraseVolume(const SideKey& key);
Status FinalizeMedium(const SideKey& key);
Status FormatVolume(const SideKey& key, const FormatOptions& options);

enum class Activity { Enable, Disable };

Status SetJukeboxActive(Activity activity, int32_t jukeboxId);
Status SetMagazineActive(Activity activity, int32_t jukeboxId, int32_t magazine);
Status SetDriveActive(Activity activity, int32_t jukeboxId, int32_t drive);
Status SetVolumeActive(Activity activity, int32_t volumeId);

Status RenameJukebox(int32_t jukeboxId, const std::string& newName);
Status SetVolumeDirectory(int32_t volumeId, const std::string& directory);

}  // namespace krvcmd
