#include <cstddef>
#include <cstdio>

#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {
namespace {
constexpr size_t kOutputBuffer = 65536;
}

// There is no signal for a broken pipe here, and the C runtime's streams stay closed when the
// caller gave none: a file that is opened later takes neither their place nor their number.
void PrepareStandardStreams() {
    // On a console the C runtime hands over one character at a time unless it is told to gather them.
    // Whoever writes to standard error flushes standard output before.
    (void)std::setvbuf(stdout, nullptr, _IOFBF, kOutputBuffer);
}

int ExitStatus(uint32_t code) {
    return static_cast<int>(code);
}

}  // namespace krvcmd
