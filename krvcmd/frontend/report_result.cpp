#include "krvcmd/frontend/report_result.h"

#include <cstring>
#include <utility>

#include "krvcmd/console/control_characters.h"
#include "krvcmd/console/query_table.h"

namespace krvcmd {

using Ostrel::UI::Console::Stream;
using Ostrel::UI::Console::TamedText;

namespace {

std::string SystemErrorMessage(std::uint32_t code) {
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
