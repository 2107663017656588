#include "krvcmd/service/sdk/call.h"

#include <cstring>
#include <new>
#include <string_view>

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

std::unique_ptr<char, FreeMemory> AllocateZeroed(size_t size) {
    std::unique_ptr<char, FreeMemory> memory(static_cast<char*>(std::calloc(size, 1)));
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace krvcmd
