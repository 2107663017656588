#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/frontend/base/memory_guard.h"
#include "tools/common/terminal_text.h"
#include "tools/krvsim/tool.h"

namespace {

int RunKrvsim(int argc, char** argv) {
    using Ostrel::UI::Console::Stream;
    Ostrel::UI::Console::Platform::SurviveFileSizeLimit();
    embedded::tools::SafeStream out(std::cout, Stream::StandardOutput);
    embedded::tools::SafeStream err(std::cerr, Stream::StandardError);
    return embedded::tools::RunTool(std::vector<std::string>(argv + 1, argv + argc), {out.Get(), err.Get()});
}

// Without streams, which need memory.
int FailWithoutMemory() {
    (void)std::fputs("krvsim: not enough memory\n", stderr);
    return 1;
}

// Called before the parser's static objects are made, whose failed allocations nobody can catch.
[[gnu::constructor(101)]] void RequireMemory() {
    constexpr size_t kNeededByStaticObjects = 1'000'000;
    if (!krvcmd::HasMemoryFor(kNeededByStaticObjects)) std::_Exit(FailWithoutMemory());
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return RunKrvsim(argc, argv);
    } catch (const std::bad_alloc&) {
        return FailWithoutMemory();
    }
}
