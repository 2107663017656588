#include "tools/rehearsal/output_tee_posix.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "tools/common/streams.h"

namespace embedded::tools {

// A channel, which the header names, has members of these types, so they have linkage.
class StreamDescriptor {
  public:
    // Not one of the standard streams, which may be closed.
    explicit StreamDescriptor(int opened) {
        constexpr int kFirst = 3;
        if (opened < 0) throw ToolFailure(std::string("cannot record the output: ") + std::strerror(errno));
        m_number = opened >= kFirst ? opened : fcntl(opened, F_DUPFD_CLOEXEC, kFirst);
        if (m_number != opened) close(opened);
    }
    StreamDescriptor(const StreamDescriptor&) = delete;
    StreamDescriptor& operator=(const StreamDescriptor&) = delete;
    ~StreamDescriptor() { Close(); }

    int Get() const { return m_number; }
    void Close() {
        if (m_number >= 0) close(m_number);
        m_number = -1;
    }

  private:
    int m_number = -1;
};

struct StreamEnds {
    std::unique_ptr<StreamDescriptor> reading;
    std::unique_ptr<StreamDescriptor> writing;
};

namespace {

StreamEnds MakePipe() {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) ends.fill(-1);
    return {std::make_unique<StreamDescriptor>(ends[0]), std::make_unique<StreamDescriptor>(ends[1])};
}

// A terminal like the one at `original`, which does not change what is written: the original does that.
StreamEnds MakeTerminal(int original) {
    StreamEnds ends;
    ends.reading = std::make_unique<StreamDescriptor>(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    std::array<char, 64> name{};
    const int terminal = ends.reading->Get();
    const bool isOpen = grantpt(terminal) == 0 && unlockpt(terminal) == 0 &&
                        ptsname_r(terminal, name.data(), name.size()) == 0;
    ends.writing =
        std::make_unique<StreamDescriptor>(isOpen ? open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC) : -1);
    termios settings{};
    if (tcgetattr(original, &settings) == 0) {
        settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
        tcsetattr(ends.writing->Get(), TCSANOW, &settings);
    }
    winsize size{};
    if (ioctl(original, TIOCGWINSZ, &size) == 0) ioctl(terminal, TIOCSWINSZ, &size);
    return ends;
}

bool IsSameFile(int first, int second) {
    struct stat one {};
    struct stat other {};
    return fstat(first, &one) == 0 && fstat(second, &other) == 0 && one.st_dev == other.st_dev &&
           one.st_ino == other.st_ino;
}

// False when nobody reads any more, or the disk is full.
bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<size_t>(count));
        } else if (errno == EAGAIN) {
            pollfd room{descriptor, POLLOUT, 0};
            (void)poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace

// One stream, or two that are the same file.
class OutputTee::Channel {
  public:
    Channel(int target, RecordedOutput& record)
        : m_target(target),
          m_isTerminal(isatty(target) == 1),
          m_ends(m_isTerminal ? MakeTerminal(target) : MakePipe()),
          m_stop(MakePipe()),
          m_record(record) {}
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    ~Channel() { Finish(); }

    int GetDescriptor() const { return m_ends.writing->Get(); }

    void Start() {
        if (m_thread.has_value()) return;
        m_ends.writing->Close();
        // The signals are for the thread that waits for the process.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before);
        m_thread.emplace([this] { Pass(); });
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    void Finish() {
        if (!m_thread.has_value()) return;
        m_stop.writing->Close();
        m_thread->join();
        m_thread.reset();
    }

  private:
    void Pass() {
        constexpr int kLookAtSize = 100;  // milliseconds
        std::array<char, 65536> block{};
        while (true) {
            std::array<pollfd, 2> ready{pollfd{m_ends.reading->Get(), POLLIN, 0},
                                        pollfd{m_stop.reading->Get(), POLLIN, 0}};
            (void)poll(ready.data(), ready.size(), m_isTerminal ? kLookAtSize : -1);
            if (m_isTerminal) FollowSize();
            if (ready[0].revents != 0) {
                const ssize_t count = read(m_ends.reading->Get(), block.data(), block.size());
                if (count < 0 && errno == EINTR) continue;
                if (count <= 0) return;
                const std::string_view bytes(block.data(), static_cast<size_t>(count));
                m_record.Add(bytes);
                if (!WriteAll(m_target, bytes)) break;
            } else if (ready[1].revents != 0) {
                return;
            }
        }
        // The process shall notice as well.
        m_ends.reading->Close();
    }

    // Programs ask for the size again when they are told of a new one, as they are here.
    void FollowSize() {
        winsize wanted{};
        winsize size{};
        const int terminal = m_ends.reading->Get();
        if (ioctl(m_target, TIOCGWINSZ, &wanted) != 0 || ioctl(terminal, TIOCGWINSZ, &size) != 0) return;
        if (wanted.ws_col == size.ws_col && wanted.ws_row == size.ws_row) return;
        ioctl(terminal, TIOCSWINSZ, &wanted);
        (void)kill(0, SIGWINCH);
    }

    int m_target;
    bool m_isTerminal;
    StreamEnds m_ends;
    StreamEnds m_stop;
    RecordedOutput& m_record;
    std::optional<std::thread> m_thread;
};

OutputTee::OutputTee(RecordedOutput& record) {
    for (size_t index = 0; index < m_channels.size(); ++index) {
        const int stream = static_cast<int>(index) + STDOUT_FILENO;
        if (fcntl(stream, F_GETFD) >= 0 && m_channels[0] != nullptr && IsSameFile(STDOUT_FILENO, stream)) {
            m_channels[index] = m_channels[0];
        } else if (fcntl(stream, F_GETFD) >= 0) {
            m_channels[index] = std::make_shared<Channel>(stream, record);
        }
    }
}

OutputTee::~OutputTee() = default;

int OutputTee::GetDescriptor(int stream) const {
    const auto& channel = m_channels[static_cast<size_t>(stream - STDOUT_FILENO)];
    return channel == nullptr ? -1 : channel->GetDescriptor();
}

void OutputTee::Start() {
    for (const auto& channel : m_channels) {
        if (channel != nullptr) channel->Start();
    }
}

void OutputTee::Finish() {
    for (const auto& channel : m_channels) {
        if (channel != nullptr) channel->Finish();
    }
}

}  // namespace embedded::tools
