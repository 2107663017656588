#pragma once

namespace embedded {

// While it exists, writing beyond the largest size that files of this process may have (ulimit -f) is an
// ordinary write error in this thread. By default the system ends the process with SIGXFSZ. The process
// belongs to the program that uses this library: how it handles the signal does not change, not even while
// this object exists; the signal is only blocked in the thread, and one that a write has raised is taken
// back. Guards may be nested.
class FileSizeSignalGuard {
  public:
    FileSizeSignalGuard();
    ~FileSizeSignalGuard();
    FileSizeSignalGuard(const FileSizeSignalGuard&) = delete;
    FileSizeSignalGuard& operator=(const FileSizeSignalGuard&) = delete;

  private:
    bool m_wasBlocked = false;
    bool m_wasPending = false;
};

}  // namespace embedded
