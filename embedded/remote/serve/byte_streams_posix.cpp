#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "embedded/remote/serve/byte_streams.h"

namespace embedded::remote {
namespace {

[[noreturn]] void ThrowSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

void PrepareStreams() {
    (void)std::signal(SIGPIPE, SIG_IGN);
}

bool ReadMore(int input, FrameReader& reader) {
    constexpr size_t kBufferSize = 16384;
    std::array<char, kBufferSize> buffer{};
    while (true) {
        const ssize_t count = read(input, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) ThrowSystemError("the caller cannot be read from");
        reader.Append({buffer.data(), static_cast<size_t>(count)});
        return count > 0;
    }
}

void WriteAll(int output, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(output, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) ThrowSystemError("the caller cannot be written to");
        bytes.remove_prefix(static_cast<size_t>(count));
    }
}

}  // namespace embedded::remote
