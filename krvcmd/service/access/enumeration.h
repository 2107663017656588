#pragma once

#include <cstdint>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// Steps through the IDs that one of the library's enumerations yields. The enumeration ends,
// without any error, when a step fails or yields an ID below 1. It also ends at an ID that it has
// been at before: a library that goes in circles must not hang the program.
class IdEnumeration {
  public:
    // KrvGetNextJukebox or KrvGetNextVolume.
    using NextFunction = KrvBool (*)(KrvCallContext*, uint32_t, uint32_t*);

    explicit IdEnumeration(NextFunction next) : m_next(next) {}

    // Goes on to the next ID; false at the end.
    bool Next();

    // The current ID, 1 or more. Only after a successful Next.
    int32_t Id() const { return static_cast<int32_t>(m_id); }

  private:
    bool IsRepeated(uint32_t id);

    NextFunction m_next;
    uint32_t m_id = 0;
    // An earlier ID, replaced after 1, 2, 4, 8, ... steps (Brent's cycle detection).
    uint32_t m_milestone = 0;
    uint64_t m_steps = 0;
    uint64_t m_nextMilestone = 1;
};

// Calls `handle` (jukebox or volume ID → Status) for each ID up to the first that fails. Returns the last
// status; success when there is no ID.
template <class Handler>
Status ForEachId(IdEnumeration::NextFunction next, Handler handle) {
    Status status;
    IdEnumeration ids(next);
    while (status.IsOk() && ids.Next())
        status = handle(ids.Id());
    return status;
}

template <class Handler>
Status ForEachJukebox(Handler handle) {
    return ForEachId(KrvGetNextJukebox, handle);
}

template <class Handler>
Status ForEachVolume(Handler handle) {
    return ForEachId(KrvGetNextVolume, handle);
}

}  // namespace krvcmd
