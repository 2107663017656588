#include "krvcmd/service/access/enumeration.h"

#include "krvcmd/service/access/session.h"

namespace krvcmd {

bool IdEnumeration::IsRepeated(uint32_t id) {
    if (id == m_id || id == m_milestone) return true;
    if (++m_steps == m_nextMilestone) {
        m_milestone = id;
        m_nextMilestone *= 2;
    }
    return false;
}

bool IdEnumeration::Next() {
    uint32_t nextId = 0;
    const bool found = CallLibrary(m_next, m_id, &nextId).IsOk() && static_cast<int32_t>(nextId) >= 1;
    if (!found || IsRepeated(nextId)) return false;
    m_id = nextId;
    return true;
}

}  // namespace krvcmd
