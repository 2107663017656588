#include "krvcmd/service/access/slot_iterator.h"

#include "krvcmd/service/access/item_lookup.h"

namespace krvcmd {

Status SlotFromAbsolute(int32_t jukeboxId, int32_t absoluteSlot, int32_t side, SlotPosition& position) {
    Status noSuchSlot = Status::SystemError(os_code::kInvalidCommandLine);
    JukeboxInfo jukebox;
    if (Status status = GetJukebox(jukeboxId, jukebox); !status.IsOk()) return status;

    int64_t base = 0;  // absolute number of the magazine's first slot
    for (int32_t m = 0; m < jukebox.record.magazineCount; ++m) {
        MagazineRecord magazine;
        // The library's own error is not reported: absolute numbers mean nothing from here on.
        if (!GetMagazineInfo(jukeboxId, m, magazine).IsOk() || magazine.slotCount == 0) return noSuchSlot;
        if (base <= absoluteSlot && absoluteSlot < base + magazine.slotCount) {
            position = {jukeboxId, m, static_cast<int32_t>(absoluteSlot - base), side};
            return {};
        }
        base += magazine.slotCount;
    }
    return noSuchSlot;
}

namespace {

int32_t IndexOrFirst(int32_t oneBasedNumber) {
    return oneBasedNumber >= 1 ? oneBasedNumber - 1 : 0;
}

}  // namespace

Status SlotIterator::Initialize(int32_t jukeboxId, int32_t magazine, int32_t slot, int32_t side) {
    m_position = {};
    m_magazineCount = 0;
    if (magazine >= 0 || slot < 1) {
        m_position = {jukeboxId, IndexOrFirst(magazine), IndexOrFirst(slot), side};
    } else if (Status status = SlotFromAbsolute(jukeboxId, slot - 1, side, m_position); !status.IsOk()) {
        return status;
    }
    m_slotCount = 0;
    m_level = WorkLevel::Slot;
    return Seek(m_position.magazine, m_position.slot);
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
    const bool described = GetMagazineInfo(m_position.jukeboxId, magazine, record).IsOk();
    m_position.magazine = magazine;
    m_position.slot = 0;
    m_slotCount = described ? record.slotCount : 0;
    return {};
}

Status SlotIterator::Seek(int32_t magazine, int32_t slot) {
    if (Status status = RefreshMagazineCount(); !status.IsOk()) return status;
    if (Status status = LoadMagazine(magazine); !status.IsOk()) return status;
    if (slot >= m_slotCount) return Status::SystemError(os_code::kInvalidCommandLine);
    m_position.magazine = magazine;
    m_position.slot = slot;
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
