#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// What the C++ runtime reserves for exceptions before main. It goes on when it gets nothing: then the first
// failed allocation ends the process, because it cannot be thrown.
inline constexpr size_t kMemoryForExceptions = 80'000;

// Whether there is a block of `size` bytes left. The same question fails again where the C++ runtime's
// failed.
inline bool HasMemoryFor(size_t size) {
    // Volatile: a compiler leaves out an allocation that nobody uses.
    void* volatile memory = std::malloc(size);
    std::free(memory);
    return memory != nullptr;
}

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
