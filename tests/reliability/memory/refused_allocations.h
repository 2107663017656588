#pragma once

#include <cstddef>

namespace krvcmd::reliability {

// While it lives, counts the memory that the program requests by new and calloc, and refuses one request or
// all from one on. The scripted library's own requests are neither counted nor refused.
//
// At most one at a time, and only in test programs that link refused_allocations.cpp, which replaces the
// global operators new and delete.
class RefusedAllocations {
  public:
    enum class Refuse { Once, AllFromThere };

    // `number` is the first request to be refused; 1 is the next one.
    RefusedAllocations(size_t number, Refuse refuse);
    ~RefusedAllocations();
    RefusedAllocations(const RefusedAllocations&) = delete;
    RefusedAllocations& operator=(const RefusedAllocations&) = delete;

    // Requests so far, including refused ones.
    static size_t Requests();

    // Bytes requested so far.
    static size_t Bytes();

    // Blocks that new handed out while a RefusedAllocations lived and that are not deleted yet.
    static ptrdiff_t BlocksInUse();
};

}  // namespace krvcmd::reliability
