#include "tools/common/long_task.h"

#include <algorithm>

#include "krvcmd/console/platform/console_platform.h"

namespace embedded::tools {
namespace {

constexpr int64_t kCells = 30;
constexpr std::chrono::milliseconds kInterval{100};

// A signal handler reaches nothing but a variable of the program.
volatile std::sig_atomic_t g_isInterrupted = 0;

extern "C" void NoteInterruption(int /*signal*/) {
    g_isInterrupted = 1;
}

bool IsTerminal() {
    namespace Console = Ostrel::UI::Console;
    return Console::Platform::IsTerminal(Console::Stream::StandardError);
}

}  // namespace

std::string ProgressLine(const std::string& task, int64_t done, int64_t total) {
    if (total == 0) return task + " " + std::to_string(done);
    const int64_t part = std::clamp<int64_t>(done, 0, total);
    std::string bar(static_cast<size_t>(part * kCells / total), '#');
    bar.resize(static_cast<size_t>(kCells), '.');
    std::string percent = std::to_string(part * 100 / total);
    percent.insert(0, 3 - percent.size(), ' ');
    return task + " [" + bar + "] " + percent + "%";
}

Progress::Progress(std::ostream& err, std::string task, int64_t total)
    : m_err(err),
      m_task(std::move(task)),
      m_total(total),
      m_isTerminal(IsTerminal()),
      m_nextShow(std::chrono::steady_clock::now() + kInterval) {}

Progress::~Progress() {
    Clear();
}

void Progress::Clear() {
    if (m_shownWidth == 0) return;
    m_err << '\r' << std::string(m_shownWidth, ' ') << std::flush << '\r' << std::flush;
    m_shownWidth = 0;
}

void Progress::Step(int64_t count) {
    m_done += count;
    if (m_isTerminal && std::chrono::steady_clock::now() >= m_nextShow) Show();
}

void Progress::Show() {
    m_nextShow = std::chrono::steady_clock::now() + kInterval;
    const std::string line = ProgressLine(m_task, m_done, m_total);
    m_err << '\r' << line << std::flush;
    m_shownWidth = line.size();
}

InterruptGuard::InterruptGuard() {
    g_isInterrupted = 0;
    m_onInterrupt = std::signal(SIGINT, &NoteInterruption);
    m_onTerminate = std::signal(SIGTERM, &NoteInterruption);
}

InterruptGuard::~InterruptGuard() {
    (void)std::signal(SIGINT, m_onInterrupt);
    (void)std::signal(SIGTERM, m_onTerminate);
}

bool InterruptGuard::IsInterrupted() {
    return g_isInterrupted != 0;
}

}  // namespace embedded::tools
