#include <span>

#include "krvcmd/frontend/driver.h"
#include "krvcmd/frontend/standard_streams.h"
#include "krvcmd/service/interrupt.h"

int main(int argc, char** argv) {
    krvcmd::PrepareStandardStreams();
    krvcmd::InstallInterruptHandler();
    const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
    return krvcmd::RunProgram(words.empty() ? words : words.subspan(1));
}
