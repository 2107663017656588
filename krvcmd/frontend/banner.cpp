#include "krvcmd/frontend/banner.h"

#include "krvcmd/console/query_table.h"

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

}  // namespace krvcmd
