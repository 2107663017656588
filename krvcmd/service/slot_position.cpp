#include "krvcmd/service/slot_position.h"

#include "krvcmd/service/item_lookup.h"

namespace krvcmd {

Status SlotFromAbsolute(std::int32_t jukeboxId, std::int32_t absoluteSlot, std::int32_t side,
                        SlotPosition& position) {
    Status noSuchSlot = Status::SystemError(os_code::kInvalidCommandLine);
    JukeboxInfo jukebox;
    if (Status status = GetJukebox(jukeboxId, jukebox); !status.IsOk()) return status;

    std::int64_t base = 0;  // absolute number of the magazine's first slot
    for (std::int32_t m = 0; m < jukebox.record.magazineCount; ++m) {
        MagazineRecord magazine;
        // The library's own error is not reported: absolute numbers mean nothing from here on.
        if (!GetMagazineInfo(jukeboxId, m, magazine).IsOk() || magazine.slotCount == 0) return noSuchSlot;
        if (base <= absoluteSlot && absoluteSlot < base + magazine.slotCount) {
            position = {jukeboxId, m, static_cast<std::int32_t>(absoluteSlot - base), side};
            return {};
        }
        base += magazine.slotCount;
    }
    return noSuchSlot;
}

}  // namespace krvcmd
