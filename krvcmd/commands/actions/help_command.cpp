#include "krvcmd/commands/actions/help_command.h"

#include "krvcmd/console/query/query_table.h"
#include "krvcmd/frontend/report/help.h"
#include "krvcmd/frontend/report/result_line.h"

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
