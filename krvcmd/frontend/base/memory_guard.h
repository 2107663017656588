#pragma once

#include <new>
#include <stdexcept>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// Runs `operation`, which returns a Status. This is the one place where a failed allocation becomes system
// error 12; so does a size that is too large for any.
template <class Operation>
Status GuardMemory(Operation operation) noexcept {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return Status::SystemError(os_code::kOutOfMemory);
    } catch (const std::length_error&) {
        return Status::SystemError(os_code::kOutOfMemory);
    }
}

}  // namespace krvcmd
