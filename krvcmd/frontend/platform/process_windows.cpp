#include <cstddef>
#include <cstdio>

#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {
namespace {
constexpr size_t kOutputBuffer = 65536;
}

// Broken pipes raise no signal here, and a standard stream that the caller closed stays closed: files that
// are opened later do not take its descriptor.
void PrepareStandardStreams() {
    // Without a buffer the C runtime writes to a console character by character. Writers to standard error
    // flush this buffer first.
    (void)std::setvbuf(stdout, nullptr, _IOFBF, kOutputBuffer);
}

int ExitStatus(uint32_t code) {
    return static_cast<int>(code);
}

}  // namespace krvcmd
