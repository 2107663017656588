#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "embedded/service/service_session.h"

namespace embedded {

// The sessions that this process has open, by their handles.
class SessionTable {
  public:
    // The process's own table.
    static SessionTable& Instance();

    // A handle for a session that is about to be opened; never 0 and never given out twice.
    KrvSession Reserve();
    void Add(KrvSession handle, std::shared_ptr<ServiceSession> session);

    // Refuses a handle that is not open. A session that is closed by another thread meanwhile lives
    // on until its last call is over.
    std::shared_ptr<ServiceSession> Find(KrvSession handle);
    std::shared_ptr<ServiceSession> Remove(KrvSession handle);

  private:
    std::mutex m_mutex;
    std::unordered_map<KrvSession, std::shared_ptr<ServiceSession>> m_sessions;
    uint32_t m_last = 0;
};

}  // namespace embedded
