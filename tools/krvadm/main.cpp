#include <cstdio>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "krvcmd/console/platform/console_platform.h"
#include "tools/common/terminal_text.h"
#include "tools/krvadm/tool.h"

namespace {

// What another machine says may have characters that control a terminal.
int RunKrvadm(int argc, char** argv) {
    using Ostrel::UI::Console::Stream;
    Ostrel::UI::Console::Platform::SurviveFileSizeLimit();
    embedded::tools::SafeStream out(std::cout, Stream::StandardOutput);
    embedded::tools::SafeStream err(std::cerr, Stream::StandardError);
    return embedded::tools::RunAdministration(std::vector<std::string>(argv + 1, argv + argc),
                                              {out.Get(), err.Get()});
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return RunKrvadm(argc, argv);
    } catch (const std::bad_alloc&) {
        (void)std::fputs("krvadm: not enough memory\n", stderr);
        return 1;
    }
}
