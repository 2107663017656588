#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <ostream>
#include <string>

namespace embedded::tools {

// Shows how far a long task is, on one line of the terminal that is overwritten.
class Progress {
  public:
    // Writes to `err`, and only when the standard error of the process is a terminal. A total of 0 is
    // unknown: then a count stands in place of the bar.
    Progress(std::ostream& err, std::string task, int64_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();  // clears the line

    void Step(int64_t count = 1);

    // Clears the line for other output; the next step may show it again.
    void Clear();

  private:
    void Show();

    std::ostream& m_err;
    std::string m_task;
    int64_t m_total;
    int64_t m_done = 0;
    size_t m_shownWidth = 0;
    bool m_isTerminal;
    std::chrono::steady_clock::time_point m_nextShow;
};

// The line: the task, a bar of 30 cells and a percentage, or the task and a count.
std::string ProgressLine(const std::string& task, int64_t done, int64_t total);

// Notes SIGINT and SIGTERM while it exists, instead of letting them end the process. Only one exists at a
// time.
class InterruptGuard {
  public:
    InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();

    // Whether a signal came since the last guard was made.
    static bool IsInterrupted();

  private:
    void (*m_onInterrupt)(int);
    void (*m_onTerminate)(int);
};

}  // namespace embedded::tools
