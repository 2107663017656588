#pragma once

#include "krvcmd/frontend/status.h"

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

}  // namespace krvcmd
