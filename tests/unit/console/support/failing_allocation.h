#pragma once

#include <cstddef>

namespace krvcmd::test {

// While it lives, the allocation with this number (1 is the next one) fails with std::bad_alloc; all others
// succeed.
class FailingAllocation {
  public:
    explicit FailingAllocation(size_t number);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // Whether that allocation was reached.
    bool HasFailed() const;
};

}  // namespace krvcmd::test
