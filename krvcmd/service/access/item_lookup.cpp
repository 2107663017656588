#include "krvcmd/service/access/item_lookup.h"

#include <string_view>

#include "krvcmd/service/access/enumeration.h"
#include "krvcmd/service/access/library_call.h"
#include "krvcmd/service/sdk/keys.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {
namespace {

// The media type code that stands for "not told yet".
constexpr uint32_t kUnknownMedium = 254;

}  // namespace

Status GetJukebox(int32_t jukeboxId, JukeboxInfo& jukebox) {
    jukebox.key = MakeJukeboxKey(jukeboxId);
    jukebox.record = {};
    jukebox.record.size = sizeof(JukeboxRecord);
    jukebox.record.driveCount = -1;
    jukebox.record.magazineCount = -1;
    return CallLibrary(KrvGetJukebox, &jukebox.key, &jukebox.record);
}

Status GetMagazineInfo(int32_t jukeboxId, int32_t magazine, MagazineRecord& record) {
    const MagazineKey key = MakeMagazineKey(jukeboxId, magazine);
    record = {};
    record.size = sizeof(MagazineRecord);
    record.slotCount = -1;
    return CallLibrary(KrvGetMagazine, &key, &record);
}

Status GetDriveInfo(int32_t jukeboxId, int32_t drive, DriveRecord& record) {
    const DriveKey key = MakeDriveKey(jukeboxId, drive);
    record = {};
    record.size = sizeof(DriveRecord);
    return CallLibrary(KrvGetDrive, &key, &record);
}

Status GetSlotInfo(int32_t jukeboxId, int32_t magazine, int32_t slot, SlotRecord& record) {
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

Status CheckJukebox(int32_t jukeboxId) {
    JukeboxInfo jukebox;
    return GetJukebox(jukeboxId, jukebox);
}

namespace {

// A jukebox that cannot be described is passed over.
bool HasName(int32_t jukeboxId, std::string_view name) {
    JukeboxInfo jukebox;
    return GetJukebox(jukeboxId, jukebox).IsOk() && RecordText(jukebox.record.name) == name;
}

}  // namespace

Status ResolveJukebox(const ItemAddress& address, int32_t& jukeboxId) {
    jukeboxId = -1;
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
