#include "krvcmd/service/resolve_jukebox.h"

#include <string_view>

#include "krvcmd/service/enumeration.h"
#include "krvcmd/service/item_lookup.h"
#include "krvcmd/service/record_text.h"

namespace krvcmd {

namespace {

// A jukebox that cannot be described is passed over.
bool HasName(std::int32_t jukeboxId, std::string_view name) {
    JukeboxInfo jukebox;
    return GetJukebox(jukeboxId, jukebox).IsOk() && RecordText(jukebox.record.name) == name;
}

}  // namespace

Status ResolveJukebox(const ItemAddress& address, std::int32_t& jukeboxId) {
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
