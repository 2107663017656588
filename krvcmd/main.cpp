#include <span>

#include "krvcmd/frontend/driver/driver.h"
#include "krvcmd/frontend/platform/process.h"
#include "krvcmd/service/interrupt/interrupt.h"

int main(int argc, char** argv) {
    krvcmd::PrepareStandardStreams();
    krvcmd::InstallInterruptHandler();
    const std::span<const char* const> words(argv, static_cast<size_t>(argc));
    return krvcmd::RunProgram(words.empty() ? words : words.subspan(1));
}
