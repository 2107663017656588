#include "krvcmd/commands/help_command.h"

#include "krvcmd/console/query_table.h"
#include "krvcmd/frontend/banner.h"
#include "krvcmd/frontend/help.h"

namespace krvcmd {

Status CHelp::Execute() {
    return Run();
}

Status CHelp::Run() {
    BannerFlags& flags = GetBannerFlags();
    const Status banner = PrintBanner(flags);
    flags.quiet = true;  // no success message after the help text

    Ostrel::UI::Console::CKrvQueryTable writer;
    const bool hasTopic = Parameters().size() == 1;
    HelpPrinter(writer).PrintHelp(hasTopic ? Parameters().front().text : std::string());
    const Status written = writer.Finish();
    return FirstError(banner, written);
}

}  // namespace krvcmd
