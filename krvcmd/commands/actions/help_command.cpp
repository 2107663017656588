#include "krvcmd/commands/actions/help_command.h"

#include "krvcmd/frontend/report/help.h"
#include "krvcmd/frontend/report/result_line.h"

namespace krvcmd {

Status CHelp::Execute() {
    return Run();
}

Status CHelp::Run() {
    BannerFlags& flags = GetBannerFlags();
    const Status banner = PrintBanner(flags, Writer());
    flags.quiet = true;  // no success message after the help text

    const bool hasTopic = Parameters().size() == 1;
    PrintHelp(hasTopic ? Parameters().front().text : std::string_view(), Writer());
    const Status written = Writer().Finish();
    return FirstError(banner, written);
}

}  // namespace krvcmd
