#include "tests/unit/console/support/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {

// Allocations that still succeed; 0: none will fail.
size_t g_untilFailure = 0;

void* Allocate(size_t size) {
    if (g_untilFailure != 0 && --g_untilFailure == 0) throw std::bad_alloc();
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

// All of the test program allocates through these.
void* operator new(size_t size) {
    return Allocate(size);
}
void* operator new[](size_t size) {
    return Allocate(size);
}
void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return Allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}

namespace krvcmd::test {

FailingAllocation::FailingAllocation(size_t number) {
    g_untilFailure = number;
}

FailingAllocation::~FailingAllocation() {
    g_untilFailure = 0;
}

bool FailingAllocation::HasFailed() const {
    return g_untilFailure == 0;
}

}  // namespace krvcmd::test
