#include "krvcmd/frontend/report/result_line.h"

#include <gtest/gtest.h>

#include <string>

#include "krvcmd/console/writer/output_object.h"
#include "tests/support/captured_output.h"

namespace krvcmd {
namespace {

std::string Printed(BannerFlags& flags) {
    GetProgramNames() = {"krvcmd", "Carvoline"};
    return test::OutputOf([&flags] { EXPECT_TRUE(PrintBanner(flags).IsOk()); });
}

TEST(PrintBanner, PrintsProductMakerAndAnEmptyLine) {
    BannerFlags flags;
    EXPECT_EQ(Printed(flags), test::Lines({
                                  "Carvoline - command line interface",
                                  "Copyright (c) Ostrel 2003-2026",
                                  "",
                              }));
    EXPECT_TRUE(flags.bannerShown);
    EXPECT_FALSE(flags.quiet);
}

TEST(PrintBanner, PrintsNothingTheSecondTime) {
    BannerFlags flags;
    EXPECT_NE(Printed(flags), "");
    EXPECT_EQ(Printed(flags), "");
}

TEST(PrintBanner, PrintsNothingWhenQuietAndIsNotShownThen) {
    BannerFlags flags;
    flags.quiet = true;
    EXPECT_EQ(Printed(flags), "");
    EXPECT_FALSE(flags.bannerShown);
    flags.quiet = false;
    EXPECT_NE(Printed(flags), "");
}

TEST(GetBannerFlags, StartClearAndAreTheSameForEverybody) {
    EXPECT_FALSE(GetBannerFlags().quiet);
    EXPECT_FALSE(GetBannerFlags().bannerShown);
    EXPECT_EQ(&GetBannerFlags(), &GetBannerFlags());
}

}  // namespace
}  // namespace krvcmd
