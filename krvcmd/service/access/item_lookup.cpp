#include "krvcmd/service/access/item_lookup.h"

#include <string_view>

#include "krvcmd/service/access/enumeration.h"
#include "krvcmd/service/access/session.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

template <class Function, class Key, class Record>
Status LookUp(Function function, const Key& key, Record& record) {
    Preset(record);
    return CallLibrary(function, &key, &record);
}

// One call of a function that lists something of the volume.
template <class Function>
auto ListOf(Function function, int32_t volumeId) {
    const auto id = static_cast<uint32_t>(volumeId);
    return [function, id](auto... arguments) { return CallLibrary(function, id, arguments...); };
}

// A jukebox that cannot be described is passed over.
bool HasName(int32_t jukeboxId, std::string_view name) {
    JukeboxInfo jukebox;
    return GetJukebox(jukeboxId, jukebox).IsOk() && RecordText(jukebox.record.name) == name;
}

}  // namespace

Status GetJukebox(int32_t jukeboxId, JukeboxInfo& jukebox) {
    jukebox.key = MakeJukeboxKey(jukeboxId);
    return LookUp(KrvGetJukebox, jukebox.key, jukebox.record);
}

Status GetMagazineInfo(const MagazineKey& key, MagazineRecord& record) {
    return LookUp(KrvGetMagazine, key, record);
}

Status GetDriveInfo(const DriveKey& key, DriveRecord& record) {
    return LookUp(KrvGetDrive, key, record);
}

Status GetSlotInfo(const SlotKey& key, SlotRecord& record) {
    return LookUp(KrvGetSlot, key, record);
}

Status GetSideInfo(const SideKey& key, SideRecord& record) {
    return LookUp(KrvGetSide, key, record);
}

Status GetVolume(int32_t volumeId, VolumeInfo& volume) {
    volume.volumeId = volumeId;
    volume.aspects.clear();
    Preset(volume.record);
    Status status = CallLibrary(KrvVolumeDetail, static_cast<uint32_t>(volumeId), &volume.record);
    if (!status.IsOk()) return status;
    return ReadAspects(ListOf(KrvVolumeAspects, volumeId), volume.aspects);
}

Status GetVolumeLocations(int32_t volumeId, std::vector<SideKey>& locations) {
    return ReadLocations(ListOf(KrvVolumeLocations, volumeId), locations);
}

Status GetFirstVolumeLocation(int32_t volumeId, std::optional<SideKey>& location) {
    return ReadFirstLocation(ListOf(KrvVolumeLocations, volumeId), location);
}

Status CheckJukebox(int32_t jukeboxId) {
    JukeboxInfo jukebox;
    return GetJukebox(jukeboxId, jukebox);
}

Status ResolveJukebox(const ItemAddress& address, int32_t& jukeboxId) {
    jukeboxId = kUnset;
    if (address.jukeboxId >= 1) {
        jukeboxId = address.jukeboxId;
        return CheckJukebox(jukeboxId);
    }
    if (address.jukeboxName.empty()) return Status::SystemError(os_code::kJukeboxUnresolved);
    IdEnumeration jukeboxes(KrvGetNextJukebox);
    while (jukeboxes.Next()) {
        if (!HasName(jukeboxes.Id(), address.jukeboxName)) continue;
        jukeboxId = jukeboxes.Id();
        return {};
    }
    return Status::SystemError(os_code::kJukeboxUnresolved);
}

}  // namespace krvcmd
