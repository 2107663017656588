#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <system_error>

#include "embedded/remote/serve/byte_streams.h"

namespace embedded::remote {
namespace {

[[noreturn]] void ThrowSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

// Bytes stay as they are.
void PrepareStreams() {
    (void)_setmode(kStandardInput, _O_BINARY);
    (void)_setmode(kStandardOutput, _O_BINARY);
}

bool ReadMore(int input, FrameReader& reader) {
    constexpr unsigned kBufferSize = 16384;
    std::array<char, kBufferSize> buffer{};
    const int count = _read(input, buffer.data(), kBufferSize);
    if (count < 0) ThrowSystemError("the caller cannot be read from");
    reader.Append({buffer.data(), static_cast<size_t>(count)});
    return count > 0;
}

void WriteAll(int output, std::string_view bytes) {
    while (!bytes.empty()) {
        const int count =
            _write(output, bytes.data(), static_cast<unsigned>(std::min<size_t>(bytes.size(), INT_MAX)));
        if (count < 0) ThrowSystemError("the caller cannot be written to");
        bytes.remove_prefix(static_cast<size_t>(count));
    }
}

}  // namespace embedded::remote
