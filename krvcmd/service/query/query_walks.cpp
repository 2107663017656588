#include "krvcmd/service/query/query_walks.h"

#include "krvcmd/service/access/enumeration.h"
#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/volume_lookup.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

constexpr uint32_t kSlotEmpty = 3;
constexpr uint32_t kSlotFull = 4;
constexpr uint32_t kSideUnreadable = 3;  // service code
constexpr int32_t kSideA = 0;
constexpr int32_t kSideB = 1;

}  // namespace

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
        MagazineRecord record;
        Status found = GetMagazineInfo(jukeboxId, m, record);
        if (found.IsOk()) {
            m_table.AddMagazineRow(jukebox, MakeMagazineKey(jukeboxId, m), record);
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
        status = ListDrive(jukeboxId, d);
    }
    return status;
}

Status QueryWalks::ListDrive(int32_t jukeboxId, int32_t drive) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    DriveRecord record;
    status = GetDriveInfo(jukeboxId, drive, record);
    if (status.IsOk()) m_table.AddDriveRow(jukebox, MakeDriveKey(jukeboxId, drive), record);
    return status;
}

Status QueryWalks::ListSlot(int32_t jukeboxId, int32_t magazine, int32_t slot, int32_t side) {
    JukeboxInfo jukebox;
    Status status = GetJukebox(jukeboxId, jukebox);
    if (!status.IsOk()) return status;
    SlotRecord record;
    status = GetSlotInfo(jukeboxId, magazine, slot, record);
    if (!status.IsOk()) return status;

    if (record.state != kSlotFull) {
        const bool addRow = m_slotRows == SlotRows::Add && record.state != kSlotEmpty;
        if (addRow) m_table.AddSlotRow(jukebox, MakeSlotKey(jukeboxId, magazine, slot), record);
        return status;
    }
    const bool oneSide = side == kSideA || side == kSideB;
    const int32_t first = oneSide ? side : kSideA;
    const int32_t last = oneSide ? side : kSideB;
    for (int32_t s = first; s <= last; ++s) {
        status = ListSide(MakeSideKey(jukeboxId, magazine, slot, s));
    }
    return status.Code() == kSideUnreadable ? Status() : status;
}

Status QueryWalks::ListSide(const SideKey& key) {
    SideRecord record;
    Status status = GetSideInfo(key, record);
    const bool usable = status.IsOk() || status.Code() == kSideUnreadable;
    if (!usable || record.volumeId < 1) return status;
    return ListVolume(key.jukeboxId, record.volumeId);
}

Status QueryWalks::ListVolume(int32_t jukeboxId, int32_t volumeId) {
    Status status = GetVolume(volumeId, m_volume);
    if (!status.IsOk()) return status;
    status = ReadVolumeLocations(volumeId, m_locations);
    if (!status.IsOk()) return status;
    if (m_locations.empty()) {
        m_table.AddVolumeRow(m_volume);
        return status;
    }
    if (jukeboxId < 1) jukeboxId = m_locations.front().jukeboxId;
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
    return ForEachVolume([this](int32_t volumeId) { return ListVolume(-1, volumeId); });
}

}  // namespace krvcmd
