#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/disc/child_process.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kPassedDescriptor = 3;
constexpr size_t kMostOutput = 65536;

Error ProgramError(const std::string& path, const char* what, int number) {
    return {ErrorKind::Refused, Printable(path) + " cannot be " + what + ": " + std::strerror(number), {}};
}

class Descriptor {
  public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Get() const { return m_number; }
    void Close() {
        if (m_number >= 0) close(m_number);
        m_number = -1;
    }

  private:
    int m_number;
};

class FileActions {
  public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }

    posix_spawn_file_actions_t* Get() { return &m_actions; }

  private:
    posix_spawn_file_actions_t m_actions{};
};

class Attributes {
  public:
    Attributes() { posix_spawnattr_init(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }

    posix_spawnattr_t* Get() { return &m_attributes; }

  private:
    posix_spawnattr_t m_attributes{};
};

// A process group of its own, so that a terminal does not interrupt it, and signals as they are by default.
bool SetAttributes(Attributes& attributes) {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    constexpr short kFlags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
    return posix_spawnattr_setflags(attributes.Get(), kFlags) == 0 &&
           posix_spawnattr_setpgroup(attributes.Get(), 0) == 0 &&
           posix_spawnattr_setsigmask(attributes.Get(), &none) == 0 &&
           posix_spawnattr_setsigdefault(attributes.Get(), &all) == 0;
}

// The descriptor that is passed goes to its place first: the others may lie there.
bool SetFiles(FileActions& actions, int passed, int output) {
    posix_spawn_file_actions_t* const list = actions.Get();
    return posix_spawn_file_actions_addopen(list, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
           posix_spawn_file_actions_adddup2(list, output, STDOUT_FILENO) == 0 &&
           posix_spawn_file_actions_adddup2(list, output, STDERR_FILENO) == 0 &&
           posix_spawn_file_actions_adddup2(list, passed, kPassedDescriptor) == 0 &&
           posix_spawn_file_actions_addclosefrom_np(list, kPassedDescriptor + 1) == 0;
}

// Everything that the program says until it ends or the time is over.
std::string ReadOutput(int pipe, steady_clock::time_point deadline) {
    std::string output;
    std::array<char, 4096> buffer{};
    while (true) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
        if (left <= milliseconds(0)) return output;
        pollfd ready{pipe, POLLIN, 0};
        const int count = poll(&ready, 1, static_cast<int>(left.count()));
        if (count < 0 && errno != EINTR) return output;
        if (count <= 0) continue;
        const ssize_t length = read(pipe, buffer.data(), buffer.size());
        if (length == 0 || (length < 0 && errno != EINTR)) return output;
        if (length > 0 && output.size() < kMostOutput)
            output.append(buffer.data(), static_cast<size_t>(length));
    }
}

Result<int> WaitForEnd(pid_t process, const std::string& path, steady_clock::time_point deadline) {
    int status = 0;
    constexpr milliseconds kPause{10};
    while (true) {
        const pid_t ended = waitpid(process, &status, WNOHANG);
        if (ended == process) break;
        if (ended < 0 && errno != EINTR) return ProgramError(path, "waited for", errno);
        if (steady_clock::now() >= deadline) kill(process, SIGKILL);
        poll(nullptr, 0, static_cast<int>(kPause.count()));
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

Result<ProgramEnd> RunProgram(const std::string& path, const std::vector<std::string>& arguments,
                              int descriptor, milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return ProgramError(path, "run", errno);
    const Descriptor output(ends[0]);
    Descriptor input(ends[1]);
    FileActions actions;
    Attributes attributes;
    if (!SetAttributes(attributes) || !SetFiles(actions, descriptor, input.Get())) {
        return ProgramError(path, "run", ENOMEM);
    }
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    std::string locale = "LC_ALL=C";
    std::array<char*, 2> environment{locale.data(), nullptr};
    pid_t process = 0;
    const int failure = posix_spawn(&process, path.c_str(), actions.Get(), attributes.Get(), pointers.data(),
                                    environment.data());
    if (failure != 0) return ProgramError(path, "run", failure);
    input.Close();
    ProgramEnd end;
    end.output = ReadOutput(output.Get(), deadline);
    const auto status = WaitForEnd(process, path, deadline);
    if (!status) return status.GetError();
    end.status = *status;
    return end;
}

}  // namespace embedded::attached
