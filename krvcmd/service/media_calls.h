#pragma once

#include <cstdint>
#include <string>

#include "krvcmd/frontend/status.h"
#include "krvcmd/service/krv_sdk.h"

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

Status SetJukeboxActive(Activity activity, std::int32_t jukeboxId);
Status SetMagazineActive(Activity activity, std::int32_t jukeboxId, std::int32_t magazine);
Status SetDriveActive(Activity activity, std::int32_t jukeboxId, std::int32_t drive);
Status SetVolumeActive(Activity activity, std::int32_t volumeId);

Status RenameJukebox(std::int32_t jukeboxId, const std::string& newName);
Status SetVolumeDirectory(std::int32_t volumeId, const std::string& directory);

}  // namespace krvcmd
