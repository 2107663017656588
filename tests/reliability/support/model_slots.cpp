#include "tests/reliability/support/model_slots.h"

namespace krvcmd::reliability {

Result ModelSlots::FindAbsolute(int32_t jukebox, int32_t absoluteSlot, int32_t side) {
    JukeboxRecord record;
    if (Result result = m_library.Jukebox(jukebox, record); !result.IsOk()) return result;
    int64_t slotsBefore = 0;
    for (int32_t m = 0; m < record.magazineCount; ++m) {
        MagazineRecord magazine;
        // What was wrong with the magazine is not told: the number leads nowhere.
        if (!m_library.Magazine(jukebox, m, magazine).IsOk() || magazine.slotCount == 0) break;
        if (slotsBefore <= absoluteSlot && absoluteSlot < slotsBefore + magazine.slotCount) {
            m_at = {jukebox, m, static_cast<int32_t>(absoluteSlot - slotsBefore), side};
            return {};
        }
        slotsBefore += magazine.slotCount;
    }
    return Result::System(22);
}

Result ModelSlots::Start(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side) {
    if (slot >= 1 && magazine < 0) {
        if (Result result = FindAbsolute(jukebox, slot - 1, side); !result.IsOk()) return result;
    } else {
        m_at = {jukebox, magazine >= 1 ? magazine - 1 : 0, slot >= 1 ? slot - 1 : 0, side};
    }
    const Place wanted = m_at;
    JukeboxRecord record;
    if (Result result = m_library.Jukebox(jukebox, record); !result.IsOk()) return result;
    m_magazines = record.magazineCount;
    if (Result result = EnterMagazine(wanted.magazine); !result.IsOk()) return result;
    if (wanted.slot >= m_slots) return Result::System(22);
    m_at.slot = wanted.slot;
    return {};
}

Result ModelSlots::EnterMagazine(int32_t magazine) {
    if (magazine >= m_magazines) return Result::System(2);
    MagazineRecord record;
    m_slots = m_library.Magazine(m_at.jukebox, magazine, record).IsOk() ? record.slotCount : 0;
    m_at.magazine = magazine;
    m_at.slot = 0;
    return {};
}

Result ModelSlots::Next(Level level) {
    if (m_at.slot + 1 < m_slots) {
        ++m_at.slot;
        return {};
    }
    return level == Level::Magazine ? Result::System(2) : EnterMagazine(m_at.magazine + 1);
}

}  // namespace krvcmd::reliability
