#include "tests/reliability/memory/refused_allocations.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

#include "tests/fake_library/fake_library.h"

// The linker gives calls of calloc to the first and lets the second reach the real one (--wrap).
extern "C" {
void* WrappedCalloc(size_t count, size_t size) asm("__wrap_calloc");
void* RealCalloc(size_t count, size_t size) asm("__real_calloc");
}

namespace krvcmd::reliability {
namespace {

constexpr size_t kNone = std::numeric_limits<size_t>::max();

struct Watch {
    bool isOn = false;
    size_t firstRefused = kNone;
    size_t lastRefused = kNone;
    size_t requests = 0;
    size_t bytes = 0;
    ptrdiff_t blocksInUse = 0;
};

constinit Watch watch;

bool IsWatched() {
    return watch.isOn && !krvfake::FakeLibrary::IsAtWork();
}

// Counts a request; true when it is to be refused.
bool Refuses(size_t size) {
    ++watch.requests;
    watch.bytes += size;
    return watch.requests >= watch.firstRefused && watch.requests <= watch.lastRefused;
}

// In front of every block: whether it was handed out to the program.
struct alignas(std::max_align_t) BlockHead {
    uint64_t isWatched;
};

void* Allocate(size_t size) noexcept {
    const bool isWatched = IsWatched();
    if (isWatched && Refuses(size)) return nullptr;
    void* const memory = std::malloc(sizeof(BlockHead) + size);
    if (memory == nullptr) return nullptr;
    auto* const head = new (memory) BlockHead{isWatched ? 1U : 0U};
    if (isWatched) ++watch.blocksInUse;
    return head + 1;
}

void* AllocateOrThrow(size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void Release(void* memory) noexcept {
    if (memory == nullptr) return;
    BlockHead* const head = static_cast<BlockHead*>(memory) - 1;
    if (head->isWatched != 0) --watch.blocksInUse;
    std::free(head);
}

}  // namespace

RefusedAllocations::RefusedAllocations(size_t number, Refuse refuse) {
    watch.firstRefused = number;
    watch.lastRefused = refuse == Refuse::Once ? number : kNone;
    watch.requests = 0;
    watch.bytes = 0;
    watch.isOn = true;
}

RefusedAllocations::~RefusedAllocations() {
    watch.isOn = false;
}

size_t RefusedAllocations::Requests() {
    return watch.requests;
}

size_t RefusedAllocations::Bytes() {
    return watch.bytes;
}

ptrdiff_t RefusedAllocations::BlocksInUse() {
    return watch.blocksInUse;
}

}  // namespace krvcmd::reliability

using krvcmd::reliability::Allocate;
using krvcmd::reliability::AllocateOrThrow;
using krvcmd::reliability::Release;

void* operator new(size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    Release(memory);
}
void operator delete[](void* memory) noexcept {
    Release(memory);
}
void operator delete(void* memory, size_t) noexcept {
    Release(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    Release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    Release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    Release(memory);
}

void* WrappedCalloc(size_t count, size_t size) {
    if (krvcmd::reliability::IsWatched() && krvcmd::reliability::Refuses(count * size)) return nullptr;
    return RealCalloc(count, size);
}
