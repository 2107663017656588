#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// Bytes that the C++ runtime reserves for exceptions before main. If it cannot get them, it continues, and
// the first failed allocation aborts the process.
inline constexpr size_t kMemoryForExceptions = 80'000;

// Whether a block of `size` bytes can be allocated. False as well if the runtime's own allocation of that
// size failed.
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
