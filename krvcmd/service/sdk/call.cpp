#include "krvcmd/service/sdk/call.h"

#include <cstring>
#include <new>
#include <string_view>

#include "krvcmd/frontend/base/memory_guard.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {

void ClearMemory(void* memory, size_t size) {
    std::memset(memory, 0, size);
}

Status CallContext::ServiceError() const {
    return Status::ServiceError(static_cast<uint32_t>(m_context.error.code),
                                std::string(RecordText(m_context.error.text)));
}

void SplitAspects(std::span<const char> buffer, size_t requiredSize, std::vector<std::string>& aspects) {
    const std::string_view list(buffer.data(), buffer.size());
    size_t offset = 0;
    while (offset < list.size() && offset <= requiredSize) {
        const std::string_view rest = list.substr(offset);
        const std::string_view aspect = rest.substr(0, rest.find('\0'));
        if (aspect.empty()) return;
        aspects.emplace_back(aspect);
        offset += aspect.size() + 1;
    }
}

Status ZeroedMemory::Make(size_t size) {
    if (size <= m_short.size()) return {};
    return GuardMemory([&]() -> Status {
        m_long.reset(static_cast<char*>(std::calloc(size, 1)));
        if (m_long == nullptr) throw std::bad_alloc();
        return {};
    });
}

Status PresetLocations(size_t count, std::vector<SideKey>& locations) {
    return GuardMemory([&]() -> Status {
        // A smaller array is freed before the larger one is made.
        if (count > locations.capacity()) locations = std::vector<SideKey>();
        locations.assign(count, kUnsetSideKey);
        return {};
    });
}

}  // namespace krvcmd
