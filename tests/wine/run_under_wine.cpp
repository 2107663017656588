#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigaction is POSIX, not in <csignal>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "tests/wine/console_stream.h"

namespace wine {
namespace {

constexpr int kOwnFailure = 125;
// Enough that the console never scrolls.
constexpr unsigned short kConsoleRows = 5000;

[[noreturn]] void Throw(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

volatile sig_atomic_t childToInterrupt = 0;

// Windows has no signals: a request to end arrives as Ctrl-C, which wine makes from SIGINT for the program's
// console handler.
void HandOnInterruption(int /*signal*/) {
    if (childToInterrupt > 0) kill(childToInterrupt, SIGINT);
}

// Passes one stream of the Windows program on to the file descriptor `to`.
struct Relay {
    int from = -1;
    int to = -1;
    ConsoleStream stream{Source::File};
};

void Write(Relay& relay, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(relay.to, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            // The reader has gone; the program must notice that too.
            close(relay.from);
            relay.from = -1;
            return;
        }
        text.remove_prefix(static_cast<size_t>(count));
    }
}

void HandOn(Relay& relay) {
    std::array<char, 65536> buffer{};
    const ssize_t count = read(relay.from, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return;
    if (count > 0) {
        Write(relay, relay.stream.Read({buffer.data(), static_cast<size_t>(count)}));
        return;
    }
    // A terminal whose last writer has gone answers with an error instead of an end.
    Write(relay, relay.stream.Finish());
    if (relay.from >= 0) close(relay.from);
    relay.from = -1;
}

struct Channel {
    int reading = -1;
    int writing = -1;
};

Channel MakePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) Throw("pipe2");
    return {ends[0], ends[1]};
}

// A terminal as wide as the one that `like` is.
Channel MakeTerminal(int like) {
    winsize size{};
    if (ioctl(like, TIOCGWINSZ, &size) != 0) Throw("TIOCGWINSZ");
    size.ws_row = kConsoleRows;
    Channel channel;
    if (openpty(&channel.reading, &channel.writing, nullptr, nullptr, &size) != 0) Throw("openpty");
    termios settings{};
    if (tcgetattr(channel.writing, &settings) != 0) Throw("tcgetattr");
    cfmakeraw(&settings);
    if (tcsetattr(channel.writing, TCSANOW, &settings) != 0) Throw("tcsetattr");
    fcntl(channel.reading, F_SETFD, FD_CLOEXEC);
    fcntl(channel.writing, F_SETFD, FD_CLOEXEC);
    return channel;
}

bool IsSameFile(int one, int other) {
    struct stat a {};
    struct stat b {};
    return fstat(one, &a) == 0 && fstat(other, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool IsPipe(int fd) {
    struct stat state {};
    return fstat(fd, &state) == 0 && S_ISFIFO(state.st_mode);
}

// The Windows program's end of one stream of this one. Files and devices are passed on unchanged.
std::optional<Channel> ChannelFor(int fd) {
    if (isatty(fd) != 0) return MakeTerminal(fd);
    if (IsPipe(fd)) return MakePipe();
    return std::nullopt;
}

struct Streams {
    std::optional<Channel> output;
    std::optional<Channel> error;  // none when both streams are one
    bool merged = false;
};

[[noreturn]] void BecomeProgram(const Streams& streams, int argc, char** argv) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (streams.output) {
        if (isatty(streams.output->writing) != 0) {
            // The console needs a terminal of its own.
            setsid();
            ioctl(streams.output->writing, TIOCSCTTY, 0);
            dup2(streams.output->writing, STDIN_FILENO);
        }
        dup2(streams.output->writing, STDOUT_FILENO);
    }
    if (streams.merged) {
        dup2(STDOUT_FILENO, STDERR_FILENO);
    } else if (streams.error) {
        dup2(streams.error->writing, STDERR_FILENO);
    }
    for (const int number : {SIGPIPE, SIGINT, SIGTERM})
        signal(number, SIG_DFL);
    std::vector<char*> arguments = {std::getenv("KRVCMD_WINE"), std::getenv("KRVCMD_WINE_PROGRAM")};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(kOwnFailure);
}

void HandOnAll(std::array<Relay, 2>& relays) {
    while (relays[0].from >= 0 || relays[1].from >= 0) {
        std::array<pollfd, 2> waiting = {{{relays[0].from, POLLIN, 0}, {relays[1].from, POLLIN, 0}}};
        if (poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR) Throw("poll");
        for (size_t i = 0; i < waiting.size(); ++i) {
            if (waiting[i].revents != 0 && relays[i].from >= 0) HandOn(relays[i]);
        }
    }
}

int Run(int argc, char** argv) {
    if (std::getenv("KRVCMD_WINE") == nullptr || std::getenv("KRVCMD_WINE_PROGRAM") == nullptr) {
        std::fputs("run_under_wine: KRVCMD_WINE and KRVCMD_WINE_PROGRAM must be set\n", stderr);
        return kOwnFailure;
    }
    Streams streams;
    streams.merged = IsSameFile(STDOUT_FILENO, STDERR_FILENO);
    streams.output = ChannelFor(STDOUT_FILENO);
    if (!streams.merged) streams.error = ChannelFor(STDERR_FILENO);

    signal(SIGPIPE, SIG_IGN);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        signal(number, HandOnInterruption);
    const pid_t child = fork();
    if (child < 0) Throw("fork");
    if (child == 0) BecomeProgram(streams, argc, argv);
    childToInterrupt = child;

    std::array<Relay, 2> relays;
    if (streams.output) {
        close(streams.output->writing);
        const Source source = isatty(STDOUT_FILENO) != 0 ? Source::Console : Source::File;
        relays[0] = {streams.output->reading, STDOUT_FILENO, ConsoleStream(source)};
    }
    if (streams.error) {
        close(streams.error->writing);
        relays[1] = {streams.error->reading, STDERR_FILENO, ConsoleStream(Source::File)};
    }
    HandOnAll(relays);

    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) Throw("waitpid");
    }
    if (WIFSIGNALED(status)) {
        signal(WTERMSIG(status), SIG_DFL);
        (void)raise(WTERMSIG(status));
    }
    return WEXITSTATUS(status);
}

}  // namespace
}  // namespace wine

// Takes the place of krvcmd in the end-to-end tests: runs krvcmd.exe under wine with the same words, and
// passes streams, signals and the exit status on like a program of this system.
//
//   KRVCMD_WINE          starts a Windows program: scripts/lib/wine
//   KRVCMD_WINE_PROGRAM  the path of krvcmd.exe
int main(int argc, char** argv) {
    try {
        return wine::Run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "run_under_wine: %s\n", error.what());
        return wine::kOwnFailure;
    }
}
