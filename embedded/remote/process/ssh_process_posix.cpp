#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

#include "embedded/platform/child_process.h"
#include "embedded/remote/process/ssh_process.h"

namespace embedded::remote {
namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMostErrorText = 4096;

[[noreturn]] void Throw(int error) {
    throw std::system_error(error, std::generic_category());
}

std::pair<Descriptor, Descriptor> MakeSocketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) Throw(errno);
    Descriptor first = AboveStandardStreams(ends[0]);
    return {std::move(first), AboveStandardStreams(ends[1])};
}

int MillisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<int64_t>(left.count() + 1, 0));
}

}  // namespace

struct SshProcess::Handles {
    Descriptor streams;
    Descriptor errors;
    std::optional<ChildProcess> process;
    std::string errorText;
    bool isFinished = false;

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
};

SshProcess::SshProcess(const std::vector<std::string>& arguments) : m_handles(std::make_unique<Handles>()) {
    auto [own, theirs] = MakeSocketPair();
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) Throw(errno);
    Descriptor errors = AboveStandardStreams(ends[0]);
    const Descriptor theirErrors = AboveStandardStreams(ends[1]);
    ChildSettings settings;
    settings.program = "ssh";
    settings.arguments = arguments;
    settings.input = theirs.Get();
    settings.output = theirs.Get();
    settings.errors = theirErrors.Get();
    m_handles->process.emplace(std::move(settings));
    (void)fcntl(own.Get(), F_SETFL, O_NONBLOCK);
    (void)fcntl(errors.Get(), F_SETFL, O_NONBLOCK);
    m_handles->streams = std::move(own);
    m_handles->errors = std::move(errors);
}

SshProcess::~SshProcess() {
    if (m_handles->isFinished) return;
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
    ChildProcess& process = *m_handles->process;
    std::optional<ChildEnd> end = process.WaitForEnd(patience);
    constexpr std::chrono::milliseconds kAfterRequest{500};
    if (!end.has_value()) {
        process.Signal(SIGTERM);
        end = process.WaitForEnd(kAfterRequest);
    }
    while (!end.has_value()) {
        process.Signal(SIGKILL);
        end = process.WaitForEnd(kAfterRequest);
    }
    m_handles->isFinished = true;
    while (m_handles->errors.Get() >= 0) {
        const size_t before = m_handles->errorText.size();
        if (!m_handles->ReadErrors() || m_handles->errorText.size() == before) break;
    }
    m_handles->streams.Close();
    m_handles->errors.Close();
    return {end->status, m_handles->errorText};
}

}  // namespace embedded::remote
