#include "krvcmd/service/query/query_walks.h"

#include "krvcmd/service/access/enumeration.h"
#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/codes.h"

namespace krvcmd {

Status QueryWalks::ListJukeboxes(int32_t jukeboxId) {
    const auto list = [this](int32_t id) {
        JukeboxInfo jukebox;
        Status status = GetJukebox(id, jukebox);
        if (status.IsOk()) m_table.AddJukeboxRow(jukebox);
        return status;
    };
    return jukeboxId < 1 ? ForEachJukebox(list) : list(jukeboxId);
}

Status QueryWalks::ListMagazines(int32_t jukeboxId) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    for (int32_t m = 0; m < jukebox.record.magazineCount && !InterruptRequested(); ++m) {
        const MagazineKey key = MakeMagazineKey(jukebox.key, m);
        MagazineRecord record;
        Status found = GetMagazineInfo(key, record);
        if (found.IsOk()) {
            m_table.AddMagazineRow(jukebox, key, record);
        } else {
            status = found;
        }
    }
    return status;
}

Status QueryWalks::ListDrives(int32_t jukeboxId) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    status = Status::SystemError(os_code::kNoSuchItem);
    for (int32_t d = 0; d < jukebox.record.driveCount && !InterruptRequested(); ++d) {
        status = ListDrive(MakeDriveKey(jukebox.key, d));
    }
    return status;
}

Status QueryWalks::ListDrive(const DriveKey& key) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(key.jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    DriveRecord record;
    status = GetDriveInfo(key, record);
    if (status.IsOk()) m_table.AddDriveRow(jukebox, key, record);
    return status;
}

Status QueryWalks::ListSlot(const SlotPosition& position) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(position.jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    const SlotKey key = position.GetSlotKey();
    SlotRecord record;
    status = GetSlotInfo(key, record);
    if (!status.IsOk()) return status;

    if (record.state != slot_state::kFull) {
        const bool addRow = m_slotRows == SlotRows::Add && record.state != slot_state::kEmpty;
        if (addRow) m_table.AddSlotRow(jukebox, key, record);
        return status;
    }
    const SideRange sides = SidesOf(position.side);
    for (int32_t side = sides.first; side <= sides.last; ++side)
        status = ListSide(MakeSideKey(key, side));
    return status.Code() == service_code::kSideUnreadable ? Status() : status;
}

Status QueryWalks::ListSide(const SideKey& key) {
    SideRecord record;
    Status status = GetSideInfo(key, record);
    const bool isUsable = status.IsOk() || status.Code() == service_code::kSideUnreadable;
    if (!isUsable || record.volumeId < 1) return status;
    return ListVolume(MakeJukeboxKey(key.jukeboxId), record.volumeId);
}

Status QueryWalks::ListVolume(const JukeboxKey& jukeboxKey, int32_t volumeId) {
    Status status = GetVolume(volumeId, m_volume);
    if (!status.IsOk()) return status;
    status = GetVolumeLocations(volumeId, m_locations);
    if (!status.IsOk()) return status;
    if (m_locations.empty()) {
        m_table.AddVolumeRow(m_volume);
        return status;
    }
    const bool hasJukebox = jukeboxKey.jukeboxId >= 1;
    const int32_t jukeboxId = hasJukebox ? jukeboxKey.jukeboxId : m_locations.front().jukeboxId;
    for (const SideKey& location : m_locations)
        status = ListVolumeAt(jukeboxId, location, m_volume);
    return status;
}

Status QueryWalks::ListVolumeAt(int32_t jukeboxId, const SideKey& location, const VolumeInfo& volume) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    SideRecord side;
    status = GetSideInfo(location, side);
    if (status.IsOk()) m_table.AddSideRow(jukebox, location, side, volume);
    return status;
}

Status QueryWalks::ListAllVolumes() {
    return ForEachVolume([this](int32_t volumeId) { return ListVolume(kNoJukebox, volumeId); });
}

}  // namespace krvcmd
