#pragma once

#include <string>
#include <string_view>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// The program-wide banner flags.
struct BannerFlags {
    bool quiet = false;        // neither banner nor success message; set when a command starts its work
    bool bannerShown = false;  // the banner has been printed
};

BannerFlags& GetBannerFlags();

// The product, its maker and the years, and an empty line.
std::string_view BannerText();

// The line that tells how the run ended, with its line end.
std::string ResultText(const Status& status);

// Prints the banner to standard output, at most once in a run and never when quiet is set. Returns the
// first write error.
Status PrintBanner(BannerFlags& flags, Ostrel::UI::Console::COutputObject& writer);

// Prints the banner, unless it has been shown, and the result line to standard error; a success stays
// without one when quiet is set. Returns the final result of the run: `status`, or, when that is success,
// the first write error of the report.
Status ReportResult(BannerFlags& flags, const Status& status, Ostrel::UI::Console::COutputObject& writer);

}  // namespace krvcmd
