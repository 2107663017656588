#include <iostream>
#include <string>
#include <vector>

#include "krvcmd/console/platform/console_platform.h"
#include "tools/common/terminal_text.h"
#include "tools/krvsim/tool.h"

int main(int argc, char** argv) {
    using Ostrel::UI::Console::Stream;
    Ostrel::UI::Console::Platform::SurviveFileSizeLimit();
    embedded::tools::SafeStream out(std::cout, Stream::StandardOutput);
    embedded::tools::SafeStream err(std::cerr, Stream::StandardError);
    return embedded::tools::RunTool(std::vector<std::string>(argv + 1, argv + argc), {out.Get(), err.Get()});
}
