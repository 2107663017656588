// Ctrl-C during a long task: noted, so that the task can end in order.
#pragma once

#include <csignal>

namespace embedded::tools {

// While it lives, Ctrl-C and a termination are noted instead of ending the process. One at a time.
class InterruptionNoted {
  public:
    InterruptionNoted();
    InterruptionNoted(const InterruptionNoted&) = delete;
    InterruptionNoted& operator=(const InterruptionNoted&) = delete;
    ~InterruptionNoted();

    // Whether there was one since the last of these objects came to life.
    static bool IsInterrupted();

  private:
    void (*m_interrupt)(int);
    void (*m_terminate)(int);
};

}  // namespace embedded::tools
