#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill is POSIX, not in <csignal>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tests/e2e/program.h"

namespace e2e {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kLongestRun{60};
constexpr int kPollMilliseconds = 2;

[[noreturn]] void Throw(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// A file descriptor that is closed at the end.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(Descriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Get() const { return m_fd; }
    bool IsOpen() const { return m_fd >= 0; }
    void Close() {
        if (m_fd >= 0) close(std::exchange(m_fd, -1));
    }

  private:
    int m_fd = -1;
};

// The end that the program writes to and the end that the test reads from.
struct Channel {
    Descriptor reading;
    Descriptor writing;
};

Channel MakePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) Throw("pipe2");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Channel MakeTerminal(int columns) {
    int controller = -1;
    int terminal = -1;
    winsize size{};
    size.ws_row = 25;
    size.ws_col = static_cast<unsigned short>(columns);
    if (openpty(&controller, &terminal, nullptr, nullptr, &size) != 0) Throw("openpty");
    Channel channel{Descriptor(controller), Descriptor(terminal)};
    // Bytes pass as the program wrote them: no "\n" becomes "\r\n".
    termios settings{};
    if (tcgetattr(terminal, &settings) != 0) Throw("tcgetattr");
    cfmakeraw(&settings);
    if (tcsetattr(terminal, TCSANOW, &settings) != 0) Throw("tcsetattr");
    fcntl(controller, F_SETFD, FD_CLOEXEC);
    fcntl(terminal, F_SETFD, FD_CLOEXEC);
    return channel;
}

Channel MakeOutput(const Run& run) {
    if (run.columns > 0) return MakeTerminal(run.columns);
    Channel channel;
    switch (run.output) {
        case OutputTo::Pipe:
            return MakePipe();
        case OutputTo::FullDisk:
            channel.writing = Descriptor(open("/dev/full", O_WRONLY | O_CLOEXEC));
            if (!channel.writing.IsOpen()) Throw("/dev/full");
            return channel;
        case OutputTo::LimitedFile:
            channel.writing = Descriptor(memfd_create("output", MFD_CLOEXEC));
            if (!channel.writing.IsOpen()) Throw("memfd_create");
            return channel;
        case OutputTo::NoReader:
            channel = MakePipe();
            channel.reading.Close();
            return channel;
        case OutputTo::Closed:
            return channel;
    }
    return channel;
}

// A folder of its own for the script and the record of one run.
class Folder {
  public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "krvcmd-e2e-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) Throw("mkdtemp");
        m_path = pattern;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string Script() const { return m_path / "script"; }
    std::string Record() const { return m_path / "record"; }

  private:
    std::filesystem::path m_path;
};

std::vector<std::string> ReadLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::string EnvironmentOr(const char* name, const char* otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

void LimitFileSize() {
    constexpr rlim_t kBytes = 1024;
    const rlimit limit{kBytes, kBytes};
    (void)setrlimit(RLIMIT_FSIZE, &limit);
}

// Sets up the streams and the environment in the child process, and starts the program there.
[[noreturn]] void BecomeProgram(const Run& run, const Folder& folder, int output, int error) {
    if (output >= 0) {
        dup2(output, STDOUT_FILENO);
    } else {
        close(STDOUT_FILENO);
    }
    dup2(error, STDERR_FILENO);
    if (run.isInputClosed) close(STDIN_FILENO);
    // A test program started with one of these ignored must not pass that on.
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGXFSZ})
        signal(number, SIG_DFL);
    if (run.output == OutputTo::LimitedFile) LimitFileSize();
    setenv("LD_LIBRARY_PATH", EnvironmentOr("KRVCMD_E2E_LIBRARY", KRVCMD_E2E_LIBRARY).c_str(), 1);
    setenv("KRVFAKE_SCRIPT", folder.Script().c_str(), 1);
    setenv("KRVFAKE_LOG", folder.Record().c_str(), 1);
    setenv("LC_ALL", run.locale.c_str(), 1);
    const std::string program = EnvironmentOr("KRVCMD_E2E_PROGRAM", KRVCMD_E2E_PROGRAM);
    std::vector<char*> arguments{const_cast<char*>(program.c_str())};
    for (const std::string& word : run.words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(program.c_str(), arguments.data());
    _exit(127);
}

// Watches the running program until it has ended and its streams are read to their ends.
class Watch {
  public:
    Watch(const Run& run, const Folder& folder, pid_t child, Channel& output, Channel& error)
        : m_run(run), m_folder(folder), m_child(child), m_output(output), m_error(error) {}

    Outcome UntilItEnds() {
        while (m_output.reading.IsOpen() || m_error.reading.IsOpen()) {
            ReadAvailable();
            SendSignals();
            EndWhenTooLong();
        }
        int status = 0;
        while (waitpid(m_child, &status, WNOHANG) == 0) {
            SendSignals();
            EndWhenTooLong();
            usleep(1000);
        }
        if (WIFEXITED(status)) m_outcome.exitStatus = WEXITSTATUS(status);
        if (WIFSIGNALED(status)) m_outcome.killedBy = WTERMSIG(status);
        m_outcome.calls = ReadLines(m_folder.Record());
        return std::move(m_outcome);
    }

  private:
    void ReadAvailable() {
        std::array<pollfd, 2> waiting = {
            {{m_output.reading.Get(), POLLIN, 0}, {m_error.reading.Get(), POLLIN, 0}}};
        const bool busy = m_signalsSent < m_run.signals.size();
        if (poll(waiting.data(), waiting.size(), busy ? kPollMilliseconds : 1000) < 0 && errno != EINTR) {
            Throw("poll");
        }
        if (waiting[0].revents != 0) ReadFrom(m_output.reading, m_outcome.standardOutput);
        if (waiting[1].revents != 0) ReadFrom(m_error.reading, m_outcome.standardError);
    }

    static int SignalOf(Interruption interruption) {
        switch (interruption) {
            case Interruption::Interrupt:
                return SIGINT;
            case Interruption::Terminate:
                return SIGTERM;
            case Interruption::HangUp:
                return SIGHUP;
        }
        return 0;
    }

    static void ReadFrom(Descriptor& from, std::string& into) {
        std::array<char, 65536> buffer{};
        const ssize_t count = read(from.Get(), buffer.data(), buffer.size());
        // A terminal whose last writer has gone answers with an error instead of an end.
        if (count <= 0) {
            from.Close();
        } else {
            into.append(buffer.data(), static_cast<size_t>(count));
        }
    }

    void SendSignals() {
        if (m_signalsSent >= m_run.signals.size()) return;
        const Run::Signal& next = m_run.signals[m_signalsSent];
        if (ReadLines(m_folder.Record()).size() < next.afterCalls) return;
        usleep(static_cast<useconds_t>(next.pauseMilliseconds) * 1000);
        kill(m_child, SignalOf(next.interruption));
        ++m_signalsSent;
    }

    void EndWhenTooLong() {
        if (Clock::now() - m_start < kLongestRun) return;
        m_outcome.timedOut = true;
        kill(m_child, SIGKILL);
    }

    const Run& m_run;
    const Folder& m_folder;
    pid_t m_child;
    Channel& m_output;
    Channel& m_error;
    Outcome m_outcome;
    size_t m_signalsSent = 0;
    Clock::time_point m_start = Clock::now();
};

}  // namespace

Outcome RunProgram(const Run& run) {
    const Folder folder;
    std::ofstream(folder.Script()) << run.script;
    Channel output = MakeOutput(run);
    Channel error = MakePipe();
    const pid_t child = fork();
    if (child < 0) Throw("fork");
    if (child == 0) {
        BecomeProgram(run, folder, output.writing.Get(),
                      run.merged ? output.writing.Get() : error.writing.Get());
    }
    output.writing.Close();
    error.writing.Close();
    return Watch(run, folder, child, output, error).UntilItEnds();
}

}  // namespace e2e
