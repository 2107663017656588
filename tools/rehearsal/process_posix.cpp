#include "tools/rehearsal/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>

#include "tools/common/streams.h"
#include "tools/rehearsal/output_tee_posix.h"
#include "tools/rehearsal/spawn_mutex_posix.h"

namespace embedded::tools {
namespace {

constexpr int kSignalBase = 128;
// The number that bubblewrap writes its state to, far from those that scripts use.
constexpr int kStateDescriptor = 200;

// A signal handler reaches nothing but variables of the program.
volatile std::sig_atomic_t g_receiver = 0;

// The terminal sends its signals to the whole group of processes; those of other senders are passed on.
extern "C" void PassOn(int signal, siginfo_t* info, void* /*context*/) {
    if (g_receiver > 0 && info->si_code <= 0) (void)kill(static_cast<pid_t>(g_receiver), signal);
}

constexpr int kTerminalSignals[] = {SIGINT, SIGQUIT};
constexpr int kOtherSignals[] = {SIGTERM, SIGHUP, SIGUSR1, SIGUSR2};

// While it exists, the signals of this process are meant for another one.
class SignalsForAnother {
  public:
    SignalsForAnother() {
        struct sigaction action {};
        action.sa_sigaction = &PassOn;
        action.sa_flags = SA_SIGINFO | SA_RESTART;
        sigemptyset(&action.sa_mask);
        for (size_t index = 0; index < kCount; ++index) {
            sigaction(kSignals[index], nullptr, &m_before[index]);
            // Ignored ones stay ignored, as the process expects that was started with nohup.
            if (m_before[index].sa_handler != SIG_IGN) sigaction(kSignals[index], &action, nullptr);
        }
    }
    SignalsForAnother(const SignalsForAnother&) = delete;
    SignalsForAnother& operator=(const SignalsForAnother&) = delete;
    ~SignalsForAnother() {
        g_receiver = 0;
        for (size_t index = 0; index < kCount; ++index)
            sigaction(kSignals[index], &m_before[index], nullptr);
    }

  private:
    static constexpr size_t kCount = std::size(kTerminalSignals) + std::size(kOtherSignals);
    static constexpr std::array<int, kCount> kSignals = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGUSR1, SIGUSR2};

    std::array<struct sigaction, kCount> m_before{};
};

// Texts as the system calls take them.
class Pointers {
  public:
    explicit Pointers(std::vector<std::string> texts) : m_texts(std::move(texts)) {
        for (std::string& text : m_texts)
            m_pointers.push_back(text.data());
        m_pointers.push_back(nullptr);
    }
    char** Get() { return m_pointers.data(); }

  private:
    std::vector<std::string> m_texts;
    std::vector<char*> m_pointers;
};

std::vector<std::string> EnvironmentOf(const ProcessRequest& request) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (!request.environment.contains(text.substr(0, text.find('=')))) all.push_back(text);
    }
    for (const auto& [name, value] : request.environment)
        all.push_back(std::string(name).append("=").append(value));
    return all;
}

// How bubblewrap runs the process: everything is as outside, but for the overlays. It ignores signals that
// the process shall get, which `env` undoes for the process.
std::vector<std::string> ClosedOffWords(const ProcessRequest& request, const std::string& program) {
    std::vector<std::string> words = {"bwrap", "--dev-bind", "/", "/"};
    for (const Overlay& overlay : request.overlays)
        words.insert(words.end(), {"--bind", overlay.source.string(), overlay.target.string()});
    words.insert(words.end(), {"--json-status-fd", std::to_string(kStateDescriptor), "--", "env"});
    if (request.output.empty()) words.emplace_back("--default-signal=INT,QUIT,TERM,HUP");
    // A path with "=" would be a variable to `env`.
    if (program.find('=') != std::string::npos) words.insert(words.end(), {"sh", "-c", R"(exec "$0" "$@")"});
    words.push_back(program);
    words.insert(words.end(), request.words.begin() + 1, request.words.end());
    return words;
}

class SpawnActions {
  public:
    SpawnActions() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
    }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    void SendOutputTo(const std::string& file) {
        constexpr int kMode = 0600;
        posix_spawn_file_actions_addopen(&m_actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, 1, file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND,
                                         kMode);
        posix_spawn_file_actions_adddup2(&m_actions, 1, 2);
    }
    void SendOutputTo(const OutputTee& tee) {
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            if (tee.GetDescriptor(stream) >= 0) Pass(tee.GetDescriptor(stream), stream);
        }
    }
    void Pass(int descriptor, int as) { posix_spawn_file_actions_adddup2(&m_actions, descriptor, as); }

    pid_t Spawn(const std::string& program, Pointers& words, Pointers& environment) {
        pid_t process = 0;
        const int failure = posix_spawnp(&process, program.c_str(), &m_actions, &m_attributes, words.Get(),
                                         environment.Get());
        if (failure != 0) throw ToolFailure(program + ": " + std::strerror(failure));
        return process;
    }

  private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

int StatusOf(int waited) {
    return WIFSIGNALED(waited) ? kSignalBase + WTERMSIG(waited) : WEXITSTATUS(waited);
}

int WaitFor(pid_t process) {
    int waited = 0;
    while (waitpid(process, &waited, 0) < 0) {
        if (errno != EINTR)
            throw ToolFailure(std::string("cannot wait for the command: ") + std::strerror(errno));
    }
    return StatusOf(waited);
}

// The state of a process that is closed off, as bubblewrap tells it.
class StatePipe {
  public:
    StatePipe() {
        if (pipe2(m_ends.data(), O_CLOEXEC) != 0)
            throw ToolFailure(std::string("cannot make a pipe: ") + std::strerror(errno));
    }
    StatePipe(const StatePipe&) = delete;
    StatePipe& operator=(const StatePipe&) = delete;
    ~StatePipe() {
        close(m_ends[0]);
        CloseWriting();
    }

    int GetWritingEnd() const { return m_ends[1]; }
    void CloseWriting() {
        if (m_ends[1] >= 0) close(m_ends[1]);
        m_ends[1] = -1;
    }

    // Waits until the number is told; nothing when it never is.
    std::optional<int> Number(const std::string& name) {
        const std::string mark = "\"" + name + "\": ";
        while (true) {
            const size_t found = m_text.find(mark);
            const size_t digits = found == std::string::npos ? found : found + mark.size();
            const bool isComplete = found != std::string::npos &&
                                    m_text.find_first_not_of("0123456789", digits) != std::string::npos;
            if (isComplete) {
                int number = 0;
                (void)std::from_chars(m_text.data() + digits, m_text.data() + m_text.size(), number);
                return number;
            }
            if (!ReadMore()) return std::nullopt;
        }
    }

  private:
    bool ReadMore() {
        std::array<char, 256> block{};
        ssize_t count = 0;
        do {
            count = read(m_ends[0], block.data(), block.size());
        } while (count < 0 && errno == EINTR);
        if (count <= 0) return false;
        m_text.append(block.data(), static_cast<size_t>(count));
        return true;
    }

    std::array<int, 2> m_ends{-1, -1};
    std::string m_text;
};

// The signals are ignored by bubblewrap itself, which inherits that.
class IgnoredWhileSpawning {
  public:
    explicit IgnoredWhileSpawning(bool isWanted) : m_isWanted(isWanted) {
        if (!m_isWanted) return;
        struct sigaction action {};
        action.sa_handler = SIG_IGN;
        for (size_t index = 0; index < kSignals.size(); ++index)
            sigaction(kSignals[index], &action, &m_before[index]);
    }
    IgnoredWhileSpawning(const IgnoredWhileSpawning&) = delete;
    IgnoredWhileSpawning& operator=(const IgnoredWhileSpawning&) = delete;
    ~IgnoredWhileSpawning() {
        if (!m_isWanted) return;
        for (size_t index = 0; index < kSignals.size(); ++index)
            sigaction(kSignals[index], &m_before[index], nullptr);
    }

  private:
    static constexpr std::array<int, 4> kSignals = {SIGINT, SIGQUIT, SIGTERM, SIGHUP};

    bool m_isWanted;
    std::array<struct sigaction, 4> m_before{};
};

// Where the outputs of the process go: to a file, through the tee, or to those of this process.
void DirectOutput(SpawnActions& actions, const ProcessRequest& request, const OutputTee* tee) {
    if (!request.output.empty()) actions.SendOutputTo(request.output.string());
    if (tee != nullptr) actions.SendOutputTo(*tee);
}

int RunClosedOff(const ProcessRequest& request, const std::string& program, OutputTee* tee) {
    const bool isForeground = request.output.empty();
    Pointers words(ClosedOffWords(request, program));
    Pointers environment(EnvironmentOf(request));
    StatePipe state;
    pid_t process = 0;
    {
        const std::lock_guard<std::mutex> lock(SpawnMutex());
        SpawnActions actions;
        DirectOutput(actions, request, tee);
        actions.Pass(state.GetWritingEnd(), kStateDescriptor);
        const IgnoredWhileSpawning ignored(isForeground);
        process = actions.Spawn("bwrap", words, environment);
    }
    state.CloseWriting();
    if (tee != nullptr) tee->Start();
    const std::optional<int> child = state.Number("child-pid");
    if (isForeground && child.has_value()) g_receiver = *child;
    (void)WaitFor(process);
    const std::optional<int> status = state.Number("exit-code");
    if (!status.has_value()) throw ToolFailure("the command could not be closed off (see bwrap's message)");
    return *status;
}

int RunOpen(const ProcessRequest& request, const std::string& program, OutputTee* tee) {
    Pointers words(request.words);
    Pointers environment(EnvironmentOf(request));
    pid_t process = 0;
    {
        const std::lock_guard<std::mutex> lock(SpawnMutex());
        SpawnActions actions;
        DirectOutput(actions, request, tee);
        process = actions.Spawn(program, words, environment);
    }
    if (tee != nullptr) tee->Start();
    if (request.output.empty()) g_receiver = process;
    return WaitFor(process);
}

bool IsProgram(const std::filesystem::path& file) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(file, ignored) && access(file.c_str(), X_OK) == 0;
}

}  // namespace

std::mutex& SpawnMutex() {
    static std::mutex s_mutex;
    return s_mutex;
}

int RunProcess(const ProcessRequest& request) {
    const std::filesystem::path program = FindProgram(request.words.front());
    if (program.empty()) throw ToolFailure(request.words.front() + ": there is no such program");
    std::optional<SignalsForAnother> signals;
    if (request.output.empty()) signals.emplace();
    std::optional<OutputTee> tee;
    if (request.output.empty() && request.record != nullptr) tee.emplace(*request.record);
    OutputTee* const passing = tee.has_value() ? &*tee : nullptr;
    const int status = request.closedOff ? RunClosedOff(request, program.string(), passing)
                                         : RunOpen(request, program.string(), passing);
    if (passing != nullptr) passing->Finish();
    return status;
}

std::filesystem::path FindProgram(const std::string& word) {
    if (word.find('/') != std::string::npos) return IsProgram(word) ? std::filesystem::path(word) : "";
    const char* variable = std::getenv("PATH");
    const std::string folders = variable == nullptr ? "/bin:/usr/bin" : variable;
    for (size_t start = 0; start <= folders.size();) {
        const size_t end = std::min(folders.find(':', start), folders.size());
        const std::filesystem::path folder = end == start ? "." : folders.substr(start, end - start);
        if (IsProgram(folder / word)) return folder / word;
        start = end + 1;
    }
    return {};
}

std::filesystem::path OwnProgram() {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/exe", ignored);
}

}  // namespace embedded::tools
