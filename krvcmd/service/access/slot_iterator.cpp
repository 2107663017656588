#include "krvcmd/service/access/slot_iterator.h"

#include <algorithm>

#include "krvcmd/service/access/item_lookup.h"

namespace krvcmd {

Status SlotFromAbsolute(const SlotKey& absolute, int32_t side, SlotPosition& position) {
    Status noSuchSlot = Status::SystemError(os_code::kInvalidCommandLine);
    JukeboxInfo jukebox;
    if (Status status = GetJukebox(absolute.jukeboxId, jukebox); !status.IsOk()) return status;

    int64_t base = 0;  // absolute number of the magazine's first slot
    for (int32_t m = 0; m < jukebox.record.magazineCount; ++m) {
        MagazineRecord magazine;
        // The library's own error is not reported: absolute numbers mean nothing from here on.
        const bool isDescribed = GetMagazineInfo(MakeMagazineKey(jukebox.key, m), magazine).IsOk();
        if (!isDescribed || magazine.slotCount == 0) return noSuchSlot;
        if (base <= absolute.slot && absolute.slot < base + magazine.slotCount) {
            position = {absolute.jukeboxId, m, static_cast<int32_t>(absolute.slot - base), side};
            return {};
        }
        base += magazine.slotCount;
    }
    return noSuchSlot;
}

Status SlotIterator::Initialize(const ItemAddress& address) {
    *this = {};
    const int32_t side = address.side.value_or(kUnset);
    // The number 0 on the command line is the index -1: the first magazine or slot.
    const int32_t magazine = std::max(address.magazine.value_or(0), 0);
    const int32_t slot = address.slot.value_or(kUnset);
    SlotPosition start{address.jukeboxId, magazine, std::max(slot, 0), side};
    if (!address.magazine.has_value() && slot >= 0) {
        const SlotKey absolute = MakeAbsoluteSlotKey(MakeJukeboxKey(address.jukeboxId), slot);
        if (Status status = SlotFromAbsolute(absolute, side, start); !status.IsOk()) return status;
    }
    return Seek(start);
}

Status SlotIterator::RefreshMagazineCount() {
    JukeboxInfo jukebox;
    Status status = GetJukebox(m_position.jukeboxId, jukebox);
    if (status.IsOk()) m_magazineCount = jukebox.record.magazineCount;
    return status;
}

Status SlotIterator::LoadMagazine(int32_t magazine) {
    if (magazine >= m_magazineCount) return Status::SystemError(os_code::kNoSuchItem);
    MagazineRecord record;
    const MagazineKey key = MakeMagazineKey(MakeJukeboxKey(m_position.jukeboxId), magazine);
    const bool isDescribed = GetMagazineInfo(key, record).IsOk();
    m_position.magazine = magazine;
    m_position.slot = 0;
    m_slotCount = isDescribed ? record.slotCount : 0;
    return {};
}

Status SlotIterator::Seek(const SlotPosition& position) {
    m_position = position;
    if (Status status = RefreshMagazineCount(); !status.IsOk()) return status;
    if (Status status = LoadMagazine(position.magazine); !status.IsOk()) return status;
    if (position.slot >= m_slotCount) return Status::SystemError(os_code::kInvalidCommandLine);
    m_position.slot = position.slot;
    return {};
}

Status SlotIterator::Next() {
    if (m_position.slot + 1 < m_slotCount) {
        ++m_position.slot;
        return {};
    }
    if (m_level == WorkLevel::Magazine) return Status::SystemError(os_code::kNoSuchItem);
    return LoadMagazine(m_position.magazine + 1);
}

}  // namespace krvcmd
