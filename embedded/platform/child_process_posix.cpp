#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

#include "embedded/platform/child_process.h"

namespace embedded {
namespace {

using Clock = std::chrono::steady_clock;

// Descriptors below belong to standard streams, even where those are closed.
constexpr int kLowestDescriptor = 3;

void Require(int error) {
    if (error != 0) throw std::system_error(error, std::generic_category());
}

class FileActions {
  public:
    FileActions() { Require(posix_spawn_file_actions_init(&m_actions)); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }

    // -1: /dev/null.
    void Place(int descriptor, int as) {
        if (descriptor < 0) {
            Require(posix_spawn_file_actions_addopen(&m_actions, as, "/dev/null", O_RDWR, 0));
        } else {
            Require(posix_spawn_file_actions_adddup2(&m_actions, descriptor, as));
        }
    }
    void CloseFrom(int lowest) { Require(posix_spawn_file_actions_addclosefrom_np(&m_actions, lowest)); }

    const posix_spawn_file_actions_t* Get() const { return &m_actions; }

  private:
    posix_spawn_file_actions_t m_actions{};
};

class Attributes {
  public:
    Attributes() {
        Require(posix_spawnattr_init(&m_attributes));
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setflags(
            &m_attributes,
            static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }

    const posix_spawnattr_t* Get() const { return &m_attributes; }

  private:
    posix_spawnattr_t m_attributes{};
};

// For the functions of the system that want such a list; the words must outlive it.
std::vector<char*> Pointers(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

void Descriptor::Close() {
    if (m_number >= 0) close(m_number);
    m_number = -1;
}

Descriptor AboveStandardStreams(int number) {
    Descriptor original(number);
    if (number >= kLowestDescriptor) return original;
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, kLowestDescriptor);
    if (moved < 0) Require(errno);
    return Descriptor(moved);
}

ChildProcess::ChildProcess(ChildSettings settings) {
    FileActions actions;
    actions.Place(settings.input, STDIN_FILENO);
    actions.Place(settings.output, STDOUT_FILENO);
    actions.Place(settings.errors, STDERR_FILENO);
    // The last to be placed: the others may lie there.
    if (settings.passed >= 0) actions.Place(settings.passed, kLowestDescriptor);
    actions.CloseFrom(kLowestDescriptor + (settings.passed >= 0 ? 1 : 0));
    const Attributes attributes;
    std::vector<std::string> words{settings.program};
    words.insert(words.end(), settings.arguments.begin(), settings.arguments.end());
    const std::vector<char*> arguments = Pointers(words);
    std::vector<char*> ownEnvironment;
    if (settings.environment.has_value()) ownEnvironment = Pointers(*settings.environment);
    pid_t process = 0;
    Require(posix_spawnp(&process, settings.program.c_str(), actions.Get(), attributes.Get(),
                         arguments.data(), ownEnvironment.empty() ? environ : ownEnvironment.data()));
    m_process = process;
}

std::optional<ChildEnd> ChildProcess::WaitForEnd(std::chrono::milliseconds patience) {
    const Clock::time_point deadline = Clock::now() + patience;
    constexpr std::chrono::milliseconds kPause{2};
    while (!m_end.has_value()) {
        int status = 0;
        const pid_t ended = waitpid(m_process, &status, WNOHANG);
        if (ended == m_process) {
            m_end.emplace();
            if (WIFEXITED(status)) m_end->status = WEXITSTATUS(status);
            if (WIFSIGNALED(status)) m_end->signal = WTERMSIG(status);
        } else if (ended < 0 && errno != EINTR) {
            m_end.emplace();  // another part of this process, or the system, has taken the status
        } else if (Clock::now() >= deadline) {
            return std::nullopt;
        } else {
            std::this_thread::sleep_for(kPause);
        }
    }
    return m_end;
}

void ChildProcess::Signal(int signal) const {
    if (!m_end.has_value()) (void)kill(m_process, signal);
}

}  // namespace embedded
