#include "embedded/library/session_table.h"

#include "embedded/model/refusal.h"
#include "embedded/sessions/session.h"

namespace embedded {

SessionTable& SessionTable::Instance() {
    static SessionTable table;
    return table;
}

KrvSession SessionTable::Reserve() {
    const std::scoped_lock lock(m_mutex);
    return SessionHandle(++m_last);
}

void SessionTable::Add(KrvSession handle, std::shared_ptr<ServiceSession> session) {
    const std::scoped_lock lock(m_mutex);
    m_sessions.emplace(handle, std::move(session));
}

std::shared_ptr<ServiceSession> SessionTable::Find(KrvSession handle) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_sessions.find(handle);
    if (found == m_sessions.end()) throw Refuse(Code::NoSession, {std::to_string(handle)});
    return found->second;
}

std::shared_ptr<ServiceSession> SessionTable::Remove(KrvSession handle) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_sessions.find(handle);
    if (found == m_sessions.end()) throw Refuse(Code::NoSession, {std::to_string(handle)});
    std::shared_ptr<ServiceSession> session = std::move(found->second);
    m_sessions.erase(found);
    return session;
}

}  // namespace embedded
