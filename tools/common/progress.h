// How far a long task is, on one line that is written over; nothing is shown where nobody watches.
#pragma once

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>

namespace embedded::tools {

class Progress {
  public:
    // Shown on `err` when the process's standard error is a terminal. A bar with a total; a total of 0 stands
    // for one that nobody knows: then what is done is counted.
    Progress(std::ostream& err, std::string task, int64_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();  // takes the line away

    void Step(int64_t count = 1);

    // Makes room on the line for something else; the next step may show it again.
    void Clear();

  private:
    void Show();

    std::ostream& m_err;
    std::string m_task;
    int64_t m_total;
    int64_t m_done = 0;
    size_t m_shownWidth = 0;
    bool m_isWatched;
    std::chrono::steady_clock::time_point m_nextShow;
};

// The line: the task, a bar of 30 cells and the per cent, or the task and a number.
std::string ProgressLine(const std::string& task, int64_t done, int64_t total);

}  // namespace embedded::tools
