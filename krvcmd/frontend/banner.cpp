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
    writer.PrintText(Stream::StandardOutput, "[ProductName] - command line interface\n");
    writer.PrintText(Stream::StandardOutput, "Copyright (c) Ostrel 2003-2026\n");
    writer.PrintText(Stream::StandardOutput, "\n");
    flags.bannerShown = true;
    return writer.Finish();
}

}  // namespace krvcmd
