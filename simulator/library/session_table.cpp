#include "simulator/library/session_table.h"

#include "simulator/platform/platform.h"
#include "simulator/world/refusal.h"

namespace krvsim {

SessionTable& SessionTable::Instance() {
    static SessionTable table;
    return table;
}

KrvSession SessionTable::Add(std::shared_ptr<Session> session) {
    const std::scoped_lock lock(m_mutex);
    // The process stands in the upper half, so that a journal can tell the sessions of all apart.
    const KrvSession handle = KrvSession{ProcessId()} << 32U | ++m_last;
    m_sessions.emplace(handle, std::move(session));
    return handle;
}

std::shared_ptr<Session> SessionTable::Find(KrvSession handle) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_sessions.find(handle);
    if (found == m_sessions.end()) throw Refuse(Code::NoSession, {std::to_string(handle)});
    return found->second;
}

void SessionTable::Remove(KrvSession handle) {
    std::shared_ptr<Session> last;  // ends after the lock is gone
    const std::scoped_lock lock(m_mutex);
    const auto found = m_sessions.find(handle);
    if (found == m_sessions.end()) throw Refuse(Code::NoSession, {std::to_string(handle)});
    last = std::move(found->second);
    m_sessions.erase(found);
}

}  // namespace krvsim
