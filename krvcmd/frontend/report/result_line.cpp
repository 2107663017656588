#include "krvcmd/frontend/report/result_line.h"

#include <cstring>
#include <utility>

#include "krvcmd/console/query/query_table.h"
#include "krvcmd/console/text/safe_text.h"

namespace krvcmd {

BannerFlags& GetBannerFlags() {
    static BannerFlags flags;
    return flags;
}

Status PrintBanner(BannerFlags& flags) {
    using Ostrel::UI::Console::Stream;
    if (flags.quiet || flags.bannerShown) return {};
    Ostrel::UI::Console::CKrvQueryTable writer;
    // One text: when memory runs out, the banner has been written whole or not at all, and is never
    // begun a second time.
    writer.PrintText(Stream::StandardOutput,
                     "[ProductName] - command line interface\n"
                     "Copyright (c) Ostrel 2003-2026\n"
                     "\n");
    flags.bannerShown = true;
    return writer.Finish();
}

using Ostrel::UI::Console::Stream;
using Ostrel::UI::Console::TamedText;

namespace {

std::string SystemErrorMessage(uint32_t code) {
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

std::string ErrorMessage(const Status& status) {
    if (!status.IsServiceError()) return SystemErrorMessage(status.Code());
    // The text comes from outside: a terminal must not act upon what it holds.
    const std::string text = TamedText(status.Message(), Stream::StandardError);
    return "KRV error " + std::to_string(status.Code()) + ": " + text + "\n";
}

Status ReportResult(BannerFlags& flags, const Status& status) {
    Status result = FirstError(status, PrintBanner(flags));
    if (result.IsOk() && flags.quiet) return result;

    Ostrel::UI::Console::CKrvQueryTable writer;
    writer.PrintText(Stream::StandardError,
                     result.IsOk() ? "Operation completed successfully.\n" : ErrorMessage(result));
    // Nothing below needs memory: once the line is out, the report cannot fail and be made again.
    Status written = writer.Finish();
    return result.IsOk() ? std::move(written) : std::move(result);
}

}  // namespace krvcmd
