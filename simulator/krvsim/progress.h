// A bar that shows how far a long task is; nothing is shown where nobody watches.
#pragma once

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>

namespace krvsim {

class Progress {
  public:
    // Shown on `err` when the process's standard error is a terminal.
    Progress(std::ostream& err, std::string task, int64_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();  // takes the bar away

    void Step(int64_t count = 1);

    // More turns out to be to do.
    void Extend(int64_t count) { m_total += count; }

  private:
    void Show();

    std::ostream& m_err;
    std::string m_task;
    int64_t m_total;
    int64_t m_done = 0;
    bool m_isWatched;
    std::chrono::steady_clock::time_point m_nextShow;
};

// The line that the bar is: the task, a bar of 30 cells and the per cent.
std::string ProgressLine(const std::string& task, int64_t done, int64_t total);

}  // namespace krvsim
