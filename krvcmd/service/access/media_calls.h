#pragma once

#include <cstdint>
#include <string>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// One call to the library each. Jukeboxes and volumes are named by their IDs, everything else by its key.

Status ImportMedium(const SlotKey& key);
Status ExportMedium(const SlotKey& key);
Status ScanMedium(const SideKey& key);

Status EraseVolume(const SideKey& key);
Status FinalizeMedium(const SideKey& key);
Status FormatVolume(const SideKey& key, const FormatOptions& options);

enum class Enable : bool { No, Yes };

Status SetJukeboxActive(Enable enable, int32_t jukeboxId);
Status SetMagazineActive(Enable enable, const MagazineKey& key);
Status SetDriveActive(Enable enable, const DriveKey& key);
Status SetVolumeActive(Enable enable, int32_t volumeId);

Status RenameJukebox(int32_t jukeboxId, const std::string& newName);
Status SetVolumeDirectory(int32_t volumeId, const std::string& directory);

}  // namespace krvcmd
