#include <windows.h>

#include <cstddef>
#include <cstdio>

#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {
namespace {

constexpr size_t kOutputBuffer = 65536;

// The command line after the program's own path, which quotation marks or the first blank end.
const wchar_t* ArgumentsOf(const wchar_t* commandLine) {
    const bool isQuoted = *commandLine == L'"';
    if (isQuoted) ++commandLine;
    while (*commandLine != 0 && (isQuoted ? *commandLine != L'"' : *commandLine > L' '))
        ++commandLine;
    return commandLine;
}

}  // namespace

// Broken pipes raise no signal here, and a standard stream that the caller closed stays closed: files that
// are opened later do not take its descriptor.
void PrepareStandardStreams() {
    // Without a buffer the C runtime writes to a console character by character. Writers to standard error
    // flush this buffer first.
    (void)std::setvbuf(stdout, nullptr, _IOFBF, kOutputBuffer);
}

bool ArgumentsAreIntact() {
    if (GetACP() == CP_UTF8) return true;
    const wchar_t* arguments = ArgumentsOf(GetCommandLineW());
    BOOL isReplaced = FALSE;
    // Without this flag a similar character counts as the same.
    (void)WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, arguments, -1, nullptr, 0, nullptr, &isReplaced);
    return isReplaced == FALSE;
}

int ExitStatus(uint32_t code) {
    return static_cast<int>(code);
}

}  // namespace krvcmd
