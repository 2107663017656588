#include "krvcmd/service/item_lookup.h"

#include "krvcmd/service/keys.h"
#include "krvcmd/service/library_call.h"

namespace krvcmd {

namespace {

// The media type code that stands for "not told yet".
constexpr std::uint32_t kUnknownMedium = 254;

}  // namespace

Status GetJukebox(std::int32_t jukeboxId, JukeboxInfo& jukebox) {
    jukebox.key = MakeJukeboxKey(jukeboxId);
    jukebox.record = {};
    jukebox.record.size = sizeof(JukeboxRecord);
    jukebox.record.driveCount = -1;
    jukebox.record.magazineCount = -1;
    return CallLibrary(KrvGetJukebox, &jukebox.key, &jukebox.record);
}

Status GetMagazineInfo(std::int32_t jukeboxId, std::int32_t magazine, MagazineRecord& record) {
    const MagazineKey key = MakeMagazineKey(jukeboxId, magazine);
    record = {};
    record.size = sizeof(MagazineRecord);
    record.slotCount = -1;
    return CallLibrary(KrvGetMagazine, &key, &record);
}

Status GetDriveInfo(std::int32_t jukeboxId, std::int32_t drive, DriveRecord& record) {
    const DriveKey key = MakeDriveKey(jukeboxId, drive);
    record = {};
    record.size = sizeof(DriveRecord);
    return CallLibrary(KrvGetDrive, &key, &record);
}

Status GetSlotInfo(std::int32_t jukeboxId, std::int32_t magazine, std::int32_t slot, SlotRecord& record) {
    const SlotKey key = MakeSlotKey(jukeboxId, magazine, slot);
    record = {};
    record.size = sizeof(SlotRecord);
    record.mediumCode = kUnknownMedium;
    return CallLibrary(KrvGetSlot, &key, &record);
}

Status GetSideInfo(const SideKey& key, SideRecord& record) {
    record = {};
    record.size = sizeof(SideRecord);
    record.mediumCode = kUnknownMedium;
    record.volumeId = -1;
    return CallLibrary(KrvGetSide, &key, &record);
}

Status CheckJukebox(std::int32_t jukeboxId) {
    JukeboxInfo jukebox;
    return GetJukebox(jukeboxId, jukebox);
}

}  // namespace krvcmd
