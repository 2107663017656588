#include "simulator/krvsim/progress.h"

#include <algorithm>

#include "simulator/platform/terminal.h"

namespace krvsim {
namespace {

constexpr int64_t kCells = 30;
constexpr std::chrono::milliseconds kInterval{100};

}  // namespace

std::string ProgressLine(const std::string& task, int64_t done, int64_t total) {
    const int64_t whole = std::max<int64_t>(total, 1);
    const int64_t part = std::clamp<int64_t>(done, 0, whole);
    const auto full = static_cast<size_t>(part * kCells / whole);
    std::string bar(full, '#');
    bar.resize(static_cast<size_t>(kCells), '.');
    std::string percent = std::to_string(part * 100 / whole);
    percent.insert(0, 3 - percent.size(), ' ');
    return task + " [" + bar + "] " + percent + "%";
}

Progress::Progress(std::ostream& err, std::string task, int64_t total)
    : m_err(err),
      m_task(std::move(task)),
      m_total(total),
      m_isWatched(IsStandardErrorATerminal()),
      m_nextShow(std::chrono::steady_clock::now() + kInterval) {}

Progress::~Progress() {
    if (!m_isWatched) return;
    const std::string line(ProgressLine(m_task, 0, 1).size(), ' ');
    m_err << '\r' << line << '\r' << std::flush;
}

void Progress::Step(int64_t count) {
    m_done += count;
    if (m_isWatched && std::chrono::steady_clock::now() >= m_nextShow) Show();
}

void Progress::Show() {
    m_nextShow = std::chrono::steady_clock::now() + kInterval;
    m_err << '\r' << ProgressLine(m_task, m_done, m_total) << std::flush;
}

}  // namespace krvsim
