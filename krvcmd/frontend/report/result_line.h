#pragma once

#include <string>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// The program-wide banner flags.
struct BannerFlags {
    bool quiet = false;        // neither banner nor success message; set when a command starts its work
    bool bannerShown = false;  // the banner has been printed
};

BannerFlags& GetBannerFlags();

// Prints the banner to standard output, at most once in a run and never when quiet is set. The
// result is that of the writing.
Status PrintBanner(BannerFlags& flags);

// The result line for a failed run, with its line end. `status` must be an error.
std::string ErrorMessage(const Status& status);

// Prints the banner, if nobody has yet, and the one result line of the run to standard error: the
// error message, or the success message unless quiet is set. Gives the final result of the run:
// `status`, or, when that is success and its report cannot be written, the error of the writing.
Status ReportResult(BannerFlags& flags, const Status& status);

}  // namespace krvcmd
