#include "tools/common/progress.h"

#include <algorithm>

#include "tools/common/terminal.h"

namespace embedded::tools {
namespace {

constexpr int64_t kCells = 30;
constexpr std::chrono::milliseconds kInterval{100};

}  // namespace

std::string ProgressLine(const std::string& task, int64_t done, int64_t total) {
    if (total == 0) return task + " " + std::to_string(done);
    const int64_t part = std::clamp<int64_t>(done, 0, total);
    const auto full = static_cast<size_t>(part * kCells / total);
    std::string bar(full, '#');
    bar.resize(static_cast<size_t>(kCells), '.');
    std::string percent = std::to_string(part * 100 / total);
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
    Clear();
}

void Progress::Clear() {
    if (m_shownWidth == 0) return;
    m_err << '\r' << std::string(m_shownWidth, ' ') << '\r' << std::flush;
    m_shownWidth = 0;
}

void Progress::Step(int64_t count) {
    m_done += count;
    if (m_isWatched && std::chrono::steady_clock::now() >= m_nextShow) Show();
}

void Progress::Show() {
    m_nextShow = std::chrono::steady_clock::now() + kInterval;
    const std::string line = ProgressLine(m_task, m_done, m_total);
    m_err << '\r' << line << std::flush;
    m_shownWidth = line.size();
}

}  // namespace embedded::tools
