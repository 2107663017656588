#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/sdk/codes.h"
#include "krvcmd/service/sdk/keys.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// Zeroes memory. Out of line, because the C library does it in half the time of the instructions that a
// compiler puts in place when it knows the size.
void ClearMemory(void* memory, size_t size);

// A call context, prepared for one call: it carries the session and an empty error part. It cannot be copied,
// because it holds its own address.
class CallContext {
  public:
    explicit CallContext(KrvSession session = 0) {
        ClearMemory(&m_context, sizeof(m_context));
        m_context.headSize = offsetof(KrvCallContext, error);
        m_context.session = session;
        m_context.errorInfo = &m_context.error;
        m_context.error.size = sizeof(KrvErrorInfo);
    }
    CallContext(const CallContext&) = delete;
    CallContext& operator=(const CallContext&) = delete;

    KrvCallContext* Get() { return &m_context; }

    // The service error that a failed call has left in the context.
    Status ServiceError() const;

  private:
    KrvCallContext m_context;
};

// Calls a function of the client library, linked or loaded, with a fresh context and `arguments`; a zero
// result becomes a service error.
template <class Function, class... Arguments>
Status CallInSession(KrvSession session, Function function, Arguments... arguments) {
    CallContext context(session);
    if (function(context.Get(), arguments...) != 0) return {};
    return context.ServiceError();
}

// Splits a list of NUL-terminated strings that an empty string ends, and appends them to `aspects`. A string
// that begins beyond `requiredSize`, the size of the list as the library tells it, is left out. Nothing
// outside the buffer is read, even when the list has no end.
void SplitAspects(std::span<const char> buffer, size_t requiredSize, std::vector<std::string>& aspects);

struct FreeMemory {
    void operator()(char* memory) const { std::free(memory); }
};

// Zeroed memory for one answer of the library. Little of it needs no heap; much costs nothing until it is
// touched.
class ZeroedMemory {
  public:
    ZeroedMemory() { ClearMemory(m_short.data(), m_short.size()); }

    // Makes room for `size` bytes. System error 12: it is refused. Called once.
    Status Make(size_t size);

    char* Get() { return m_long == nullptr ? m_short.data() : m_long.get(); }

  private:
    std::array<char, 256> m_short;
    std::unique_ptr<char, FreeMemory> m_long;
};

// Makes `locations` an array of `count` preset keys. System error 12: the memory for it is refused.
Status PresetLocations(size_t count, std::vector<SideKey>& locations);

// Appends a volume's aspects (its directory names) to `aspects`. `call` makes one call of KrvVolumeAspects
// for the volume, from the arguments after its ID; the first call asks for the size of the list, the second
// for the list. System error 12: the buffer for the list is refused.
template <class Call>
Status ReadAspects(Call call, std::vector<std::string>& aspects) {
    char tooSmall = '\0';
    uint32_t requiredSize = 0;
    Status status = call(&tooSmall, uint32_t{1}, &requiredSize);
    if (!status.IsOk() || requiredSize == 0) return status;

    const uint32_t bufferSize = requiredSize;
    ZeroedMemory buffer;
    status = buffer.Make(bufferSize);
    if (!status.IsOk()) return status;
    status = call(buffer.Get(), bufferSize, &requiredSize);
    if (status.IsOk()) SplitAspects({buffer.Get(), bufferSize}, requiredSize, aspects);
    return status;
}

// Asks for locations into an array of preset keys. `call` makes one call of KrvVolumeLocations for the
// volume, from the arguments after its ID. `count` becomes the number of the volume's locations, which may
// be more than the array holds; 0 for a volume without a location.
template <class Call>
Status AskForLocations(Call call, SideKey* locations, uint32_t& count) {
    // The third argument of every call, however long the array is.
    constexpr uint32_t kAlways1 = 1;
    Status status = call(locations, kAlways1, &count);
    if (!status.IsServiceError() || status.Code() != service_code::kNoLocation) return status;
    count = 0;
    return {};
}

// Reads one location, however many there are; none for a volume without a location.
template <class Call>
Status ReadFirstLocation(Call call, std::optional<SideKey>& location) {
    SideKey key = kUnsetSideKey;
    uint32_t count = 0;
    Status status = AskForLocations(call, &key, count);
    location = status.IsOk() && count >= 1 ? std::optional(key) : std::nullopt;
    return status;
}

// Reads all locations, in a second call when there are several. None after an error, and for a volume
// without a location. System error 12: the array for them is refused.
template <class Call>
Status ReadLocations(Call call, std::vector<SideKey>& locations) {
    locations.assign(1, kUnsetSideKey);
    uint32_t count = 0;
    Status status = AskForLocations(call, locations.data(), count);
    if (status.IsOk() && count >= 2) {
        status = PresetLocations(count, locations);
        if (status.IsOk()) status = AskForLocations(call, locations.data(), count);
    }
    // The count may have grown between the calls; the array holds what it had room for.
    locations.resize(status.IsOk() ? std::min<size_t>(count, locations.size()) : 0);
    return status;
}

}  // namespace krvcmd
