#include "krvcmd/service/access/library_call.h"

#include <cstddef>
#include <string>

#include "krvcmd/service/sdk/records.h"

namespace krvcmd {

KrvSession& GetSession() {
    static KrvSession session = 0;
    return session;
}

CallContext::CallContext() {
    m_context.headSize = offsetof(KrvCallContext, error);
    m_context.session = GetSession();
    m_context.errorInfo = &m_context.error;
    m_context.error.size = sizeof(KrvErrorInfo);
}

Status CallContext::ServiceError() const {
    return Status::ServiceError(static_cast<uint32_t>(m_context.error.code),
                                std::string(RecordText(m_context.error.text)));
}

}  // namespace krvcmd
