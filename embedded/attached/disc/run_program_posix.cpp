#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/disc/run_program.h"
#include "embedded/platform/child_process.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr size_t kMostOutput = 65536;

Error ProgramError(const std::string& path, const char* what, int number) {
    return {ErrorKind::Refused, Printable(path) + " cannot be " + what + ": " + std::strerror(number), {}};
}

milliseconds TimeUntil(steady_clock::time_point deadline) {
    return std::max(std::chrono::ceil<milliseconds>(deadline - steady_clock::now()), milliseconds(0));
}

// Everything that the program says until it ends or the time is over.
std::string ReadOutput(int pipe, steady_clock::time_point deadline) {
    std::string output;
    std::array<char, 4096> buffer{};
    while (true) {
        const milliseconds left = TimeUntil(deadline);
        if (left == milliseconds(0)) return output;
        pollfd ready{pipe, POLLIN, 0};
        const int count = poll(&ready, 1, static_cast<int>(left.count()));
        if (count < 0 && errno != EINTR) return output;
        if (count <= 0) continue;
        const ssize_t length = read(pipe, buffer.data(), buffer.size());
        if (length == 0 || (length < 0 && errno != EINTR)) return output;
        if (length < 0) continue;
        output.append(buffer.data(), std::min(static_cast<size_t>(length), kMostOutput - output.size()));
    }
}

ChildEnd EndOf(ChildProcess& process, steady_clock::time_point deadline) {
    if (const auto end = process.WaitForEnd(TimeUntil(deadline))) return *end;
    constexpr milliseconds kAgain{1000};
    while (true) {
        process.Signal(SIGKILL);
        if (const auto end = process.WaitForEnd(kAgain)) return *end;
    }
}

}  // namespace

Result<ProgramEnd> RunProgram(const std::string& path, const std::vector<std::string>& arguments,
                              int descriptor, milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    try {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) return ProgramError(path, "run", errno);
        const Descriptor output = AboveStandardStreams(ends[0]);
        Descriptor input = AboveStandardStreams(ends[1]);
        ChildSettings settings;
        settings.program = path;
        settings.arguments = arguments;
        settings.output = input.Get();
        settings.errors = input.Get();
        settings.passed = descriptor;
        settings.environment = {{"LC_ALL=C"}};
        ChildProcess process(settings);
        input.Close();
        ProgramEnd result;
        result.output = ReadOutput(output.Get(), deadline);
        const ChildEnd end = EndOf(process, deadline);
        if (end.status < 0 && end.signal == 0) return ProgramError(path, "waited for", ECHILD);
        constexpr int kSignals = 128;
        result.status = end.signal != 0 ? kSignals + end.signal : end.status;
        return result;
    } catch (const std::system_error& failure) {
        return ProgramError(path, "run", failure.code().value());
    }
}

}  // namespace embedded::attached
