#include "krvcmd/service/access/media_calls.h"

#include "krvcmd/service/access/session.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {

Status ImportMedium(const SlotKey& key) {
    return CallLibrary(KrvMediaImport, &key);
}

Status ExportMedium(const SlotKey& key) {
    return CallLibrary(KrvMediaExport, &key);
}

Status ScanMedium(const SideKey& key) {
    return CallLibrary(KrvMediaScan, &key);
}

Status EraseVolume(const SideKey& key) {
    return CallLibrary(KrvVolumeErase, &key);
}

Status FinalizeMedium(const SideKey& key) {
    return CallLibrary(KrvVolumeFinalize, &key);
}

Status FormatVolume(const SideKey& key, const FormatOptions& options) {
    return CallLibrary(KrvVolumeFormat, &key, &options);
}

Status SetJukeboxActive(Enable enable, int32_t jukeboxId) {
    const JukeboxKey key = MakeJukeboxKey(jukeboxId);
    return CallLibrary(enable == Enable::Yes ? KrvActivateJukebox : KrvDeactivateJukebox, &key);
}

Status SetMagazineActive(Enable enable, const MagazineKey& key) {
    return CallLibrary(enable == Enable::Yes ? KrvActivateMagazine : KrvDeactivateMagazine, &key);
}

Status SetDriveActive(Enable enable, const DriveKey& key) {
    return CallLibrary(enable == Enable::Yes ? KrvActivateDrive : KrvDeactivateDrive, &key);
}

Status SetVolumeActive(Enable enable, int32_t volumeId) {
    const auto id = static_cast<uint32_t>(volumeId);
    if (enable == Enable::No) return CallLibrary(KrvVolumeDeactivate, id);
    return CallLibrary(KrvVolumeActivate, id, static_cast<const void*>(nullptr));
}

Status RenameJukebox(int32_t jukeboxId, const std::string& newName) {
    const JukeboxKey key = MakeJukeboxKey(jukeboxId);
    return CallLibrary(KrvJukeboxSetName, &key, newName.c_str());
}

Status SetVolumeDirectory(int32_t volumeId, const std::string& directory) {
    return CallLibrary(KrvVolumeSetAspects, static_cast<uint32_t>(volumeId), directory.c_str(), uint32_t{1});
}

}  // namespace krvcmd
