// A second process that runs a piece of the test. It is a fork: no session may be open when it starts.
#pragma once

#include <sys/types.h>

#include <functional>

namespace embedded_test {

// What a child tells its parent: one byte at a time.
class Signals {
  public:
    Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;
    ~Signals();

    // In the child.
    void Send() const;
    // In the parent: waits for one; false when the child is gone and nothing is left.
    bool Receive();
    // In the parent, once no child is started any more: from now on their end is noticed.
    void ListenOnly();

  private:
    int m_reading = -1;
    int m_writing = -1;
};

class ChildProcess {
  public:
    // The child's exit status is what `work` returns, 99 when it throws.
    explicit ChildProcess(const std::function<int()>& work);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    // The exit status, or minus the number of the signal that ended it.
    int Wait();
    void Kill() const;
    void WaitUntilStopped() const;

  private:
    pid_t m_process = -1;
};

// In a child: gives up the rights of the superuser, which permissions do not stop. True when
// permissions count from now on.
bool BecomeOrdinaryUser();

// In a child: no file may become larger than this from now on.
void LimitFileSize(size_t bytes);
void LiftFileSizeLimit();

void StopMyself();

}  // namespace embedded_test
