#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

#include "embedded/remote/process/ssh_process.h"

namespace embedded::remote {
namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMostErrorText = 4096;
// Descriptors below belong to standard streams, even where those are closed.
constexpr int kLowestDescriptor = 3;

[[noreturn]] void Throw(int error) {
    throw std::system_error(error, std::generic_category());
}

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Get() const { return m_number; }
    void Close() {
        if (m_number >= 0) close(m_number);
        m_number = -1;
    }

  private:
    int m_number = -1;
};

// Takes over the descriptor and moves it above those of the standard streams.
Descriptor Moved(int number) {
    Descriptor original(number);
    if (number >= kLowestDescriptor) return original;
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, kLowestDescriptor);
    if (moved < 0) Throw(errno);
    return Descriptor(moved);
}

std::pair<Descriptor, Descriptor> MakeSocketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) Throw(errno);
    Descriptor first = Moved(ends[0]);
    return {std::move(first), Moved(ends[1])};
}

// How ssh starts: in a session of its own, so that it has no terminal, with the usual meaning of signals.
class SpawnSettings {
  public:
    SpawnSettings(int streams, int errors) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        posix_spawn_file_actions_adddup2(&m_actions, streams, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, streams, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, errors, STDERR_FILENO);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT, SIGALRM})
            sigaddset(&signals, signal);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        posix_spawnattr_setflags(
            &m_attributes,
            static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    const posix_spawn_file_actions_t* GetActions() const { return &m_actions; }
    const posix_spawnattr_t* GetAttributes() const { return &m_attributes; }

  private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

pid_t Start(std::vector<std::string> words, const SpawnSettings& settings) {
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t process = 0;
    const int error =
        posix_spawnp(&process, "ssh", settings.GetActions(), settings.GetAttributes(), argv.data(), environ);
    if (error != 0) Throw(error);
    return process;
}

int MillisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<int64_t>(left.count() + 1, 0));
}

}  // namespace

struct SshProcess::Handles {
    Descriptor streams;
    Descriptor errors;
    pid_t process = -1;
    std::string errorText;

    // False at the end.
    bool ReadErrors() {
        std::array<char, 1024> buffer{};
        const ssize_t count = read(errors.Get(), buffer.data(), buffer.size());
        if (count < 0) return errno == EINTR || errno == EAGAIN;
        errorText.append(buffer.data(), static_cast<size_t>(count));
        if (errorText.size() > kMostErrorText) errorText.erase(0, errorText.size() - kMostErrorText);
        return count > 0;
    }

    // Waits for what the events say, and reads the error text meanwhile. False when the time is over.
    bool WaitFor(short events, Clock::time_point deadline) {
        while (true) {
            std::array<pollfd, 2> waiting{pollfd{streams.Get(), events, 0}, pollfd{errors.Get(), POLLIN, 0}};
            const int count = poll(waiting.data(), waiting.size(), MillisecondsUntil(deadline));
            if (count < 0 && errno != EINTR) Throw(errno);
            if (count > 0 && waiting[1].revents != 0 && !ReadErrors()) errors.Close();
            if (count > 0 && waiting[0].revents != 0) return true;
            if (Clock::now() >= deadline) return false;
        }
    }

    // The status as waitpid tells it; nothing while the process goes on.
    bool HasEnded(int& status) {
        const pid_t ended = waitpid(process, &status, WNOHANG);
        if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
        // Another part of the program may have taken the status already.
        if (ended < 0) status = -1;
        process = -1;
        return true;
    }

    bool WaitForEnd(int& status, std::chrono::milliseconds patience) {
        const Clock::time_point deadline = Clock::now() + patience;
        constexpr std::chrono::milliseconds kStep{2};
        while (!HasEnded(status)) {
            if (Clock::now() >= deadline) return false;
            std::this_thread::sleep_for(kStep);
        }
        return true;
    }
};

SshProcess::SshProcess(const std::vector<std::string>& arguments) : m_handles(std::make_unique<Handles>()) {
    auto [own, theirs] = MakeSocketPair();
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) Throw(errno);
    Descriptor errors = Moved(ends[0]);
    const Descriptor theirErrors = Moved(ends[1]);
    std::vector<std::string> words{"ssh"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    m_handles->process = Start(std::move(words), SpawnSettings(theirs.Get(), theirErrors.Get()));
    (void)fcntl(own.Get(), F_SETFL, O_NONBLOCK);
    (void)fcntl(errors.Get(), F_SETFL, O_NONBLOCK);
    m_handles->streams = std::move(own);
    m_handles->errors = std::move(errors);
}

SshProcess::~SshProcess() {
    if (m_handles->process < 0) return;
    try {
        (void)Finish(std::chrono::milliseconds(0));
    } catch (...) {
        // ssh ends by itself, because its input has ended.
        m_handles->streams.Close();
    }
}

Transfer SshProcess::Send(std::string_view bytes, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    while (!bytes.empty()) {
        const ssize_t count = send(m_handles->streams.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count >= 0) {
            bytes.remove_prefix(static_cast<size_t>(count));
            continue;
        }
        if (errno == EINTR) continue;
        if (errno != EAGAIN) return Transfer::Ended;
        if (!m_handles->WaitFor(POLLOUT, deadline)) return Transfer::TimedOut;
    }
    return Transfer::Done;
}

Transfer SshProcess::Receive(std::string& bytes, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    constexpr size_t kBufferSize = 65536;
    while (true) {
        const size_t before = bytes.size();
        bytes.resize(before + kBufferSize);
        const ssize_t count = recv(m_handles->streams.Get(), bytes.data() + before, kBufferSize, 0);
        bytes.resize(before + static_cast<size_t>(std::max<ssize_t>(count, 0)));
        if (count > 0) return Transfer::Done;
        if (count == 0 || (errno != EAGAIN && errno != EINTR)) return Transfer::Ended;
        if (!m_handles->WaitFor(POLLIN, deadline)) return Transfer::TimedOut;
    }
}

void SshProcess::CloseInput() {
    (void)shutdown(m_handles->streams.Get(), SHUT_WR);
}

SshEnd SshProcess::Finish(std::chrono::milliseconds patience) {
    CloseInput();
    int status = -1;
    bool hasEnded = m_handles->WaitForEnd(status, patience);
    constexpr std::chrono::milliseconds kAfterRequest{500};
    if (!hasEnded) {
        (void)kill(m_handles->process, SIGTERM);
        hasEnded = m_handles->WaitForEnd(status, kAfterRequest);
    }
    if (!hasEnded) {
        (void)kill(m_handles->process, SIGKILL);
        (void)waitpid(std::exchange(m_handles->process, -1), &status, 0);
    }
    while (m_handles->errors.Get() >= 0) {
        const size_t before = m_handles->errorText.size();
        if (!m_handles->ReadErrors() || m_handles->errorText.size() == before) break;
    }
    m_handles->streams.Close();
    m_handles->errors.Close();
    return {status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1, m_handles->errorText};
}

}  // namespace embedded::remote
