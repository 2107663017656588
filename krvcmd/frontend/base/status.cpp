#include "krvcmd/frontend/base/status.h"

#include <utility>

namespace krvcmd {

Status Status::SystemError(uint32_t osCode) {
    Status status;
    if (osCode == 0) return status;
    status.m_kind = Kind::SystemError;
    status.m_osCode = osCode;
    return status;
}

Status Status::ServiceError(uint32_t serviceCode, std::string message) {
    Status status;
    status.m_kind = Kind::ServiceError;
    status.m_serviceCode = serviceCode;
    status.m_message = std::move(message);
    return status;
}

}  // namespace krvcmd
