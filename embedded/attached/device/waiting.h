#pragma once

#include <chrono>

namespace embedded::attached {

// The clock that time limits are measured by, and the pauses between attempts. Tests have one whose pauses
// take no time.
class Waiting {
  public:
    using Instant = std::chrono::steady_clock::time_point;

    Waiting() = default;
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    virtual ~Waiting() = default;

    virtual Instant Now();
    virtual void Pause(std::chrono::milliseconds time);
};

// The machine's own.
Waiting& RealWaiting();

}  // namespace embedded::attached
