#include "krvcmd/service/slot_iterator.h"

#include "krvcmd/service/item_lookup.h"

namespace krvcmd {

namespace {

std::int32_t IndexOrFirst(std::int32_t oneBasedNumber) {
    return oneBasedNumber >= 1 ? oneBasedNumber - 1 : 0;
}

}  // namespace

Status SlotIterator::Initialize(std::int32_t jukeboxId, std::int32_t magazine, std::int32_t slot,
                                std::int32_t side) {
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

Status SlotIterator::LoadMagazine(std::int32_t magazine) {
    if (magazine >= m_magazineCount) return Status::SystemError(os_code::kNoSuchItem);
    MagazineRecord record;
    const bool described = GetMagazineInfo(m_position.jukeboxId, magazine, record).IsOk();
    m_position.magazine = magazine;
    m_position.slot = 0;
    m_slotCount = described ? record.slotCount : 0;
    return {};
}

Status SlotIterator::Seek(std::int32_t magazine, std::int32_t slot) {
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
