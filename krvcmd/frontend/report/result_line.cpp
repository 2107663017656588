#include "krvcmd/frontend/report/result_line.h"

#include <cstring>
#include <utility>

#include "krvcmd/console/text/safe_text.h"

namespace krvcmd {
namespace {

using Ostrel::UI::Console::COutputObject;
using Ostrel::UI::Console::Stream;

std::string SystemErrorText(uint32_t code) {
    switch (code) {
        case os_code::kNoSuchItem:
            return "Error: No such item present.\n";
        case os_code::kInvalidCommandLine:
            return "Error: Invalid command line parameter. Specify help to get further information.\n";
        default:
            return "OS error " + std::to_string(code) + ": " + std::strerror(static_cast<int>(code)) + "\n";
    }
}

}  // namespace

BannerFlags& GetBannerFlags() {
    static BannerFlags flags;
    return flags;
}

std::string_view BannerText() {
    return "[ProductName] - command line interface\n"
           "Copyright (c) Ostrel 2003-2026\n"
           "\n";
}

std::string ResultText(const Status& status) {
    if (status.IsOk()) return "Operation completed successfully.\n";
    if (!status.IsServiceError()) return SystemErrorText(status.Code());
    // The service's text must not control the terminal.
    const std::string text = Ostrel::UI::Console::SafeText(status.Message(), Stream::StandardError);
    return "KRV error " + std::to_string(status.Code()) + ": " + text + "\n";
}

Status PrintBanner(BannerFlags& flags, COutputObject& writer) {
    if (flags.quiet || flags.bannerShown) return {};
    // One text: without memory it is not begun, so it never appears in part or twice.
    writer.PrintText(Stream::StandardOutput, BannerText());
    flags.bannerShown = true;
    return writer.Finish();
}

Status ReportResult(BannerFlags& flags, const Status& status, COutputObject& writer) {
    Status result = FirstError(status, PrintBanner(flags, writer));
    if (result.IsOk() && flags.quiet) return result;
    writer.PrintText(Stream::StandardError, ResultText(result));
    // Nothing below needs memory: a line that has been printed is not reported again.
    Status written = writer.Finish();
    return result.IsOk() ? std::move(written) : std::move(result);
}

}  // namespace krvcmd
