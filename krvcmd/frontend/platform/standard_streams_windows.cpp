#include <cstddef>
#include <cstdio>

#include "krvcmd/frontend/standard_streams.h"

namespace krvcmd {

namespace {
constexpr std::size_t kOutputBuffer = 65536;
}

// There is no signal for a broken pipe here, and the C runtime's streams stay closed when the
// caller gave none: a file that is opened later takes neither their place nor their number.
void PrepareStandardStreams() {
    // On a console the C runtime hands over one character at a time unless it is told to gather them.
    // Whoever writes to standard error flushes standard output before.
    (void)std::setvbuf(stdout, nullptr, _IOFBF, kOutputBuffer);
}

}  // namespace krvcmd
