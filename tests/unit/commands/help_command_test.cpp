#include "krvcmd/console/query/query_table.h"
#include "krvcmd/frontend/report/help.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using test::Calls;
using test::Outcome;
using test::Words;

constexpr std::string_view kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";

class HelpCommandTest : public test::CommandTest {
  protected:
    // What the command prints behind the banner; no call is made and the run stays quiet from then on.
    std::string HelpOf(const Words& words) {
        GetBannerFlags() = {};
        const Outcome outcome = Run(words);
        EXPECT_EQ(outcome.status, "OK");
        EXPECT_EQ(outcome.calls, Calls{});
        EXPECT_TRUE(outcome.output.starts_with(kBanner));
        EXPECT_TRUE(GetBannerFlags().quiet);
        EXPECT_TRUE(GetBannerFlags().bannerShown);
        return outcome.output.substr(kBanner.size());
    }

    static std::string Topic(std::string_view word) {
        testing::internal::CaptureStdout();
        Ostrel::UI::Console::CKrvQueryTable writer;
        HelpPrinter(writer).PrintHelp(word);
        EXPECT_TRUE(writer.Finish().IsOk());
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(HelpCommandTest, PrintsTheGeneralHelpWithoutATopic) {
    for (const Words& words : {Words{"help"}, Words{"?"}, Words{"-?"}, Words{"/?"}, Words{"h"}}) {
        EXPECT_EQ(HelpOf(words), Topic(""));
    }
}

TEST_F(HelpCommandTest, PrintsTheHelpOfItsTopic) {
    EXPECT_EQ(HelpOf({"help", "service"}), Topic("service"));
    EXPECT_EQ(HelpOf({"help", "qu"}), Topic("query"));
    EXPECT_EQ(HelpOf({"help", "?"}), "usage/help output\n");
    EXPECT_EQ(HelpOf({"help", "=scan"}), Topic("scan"));
}

TEST_F(HelpCommandTest, PrintsTheGeneralHelpForUnknownTopics) {
    for (const char* topic : {"xyz", "help", "quiet", "delete"})
        EXPECT_EQ(HelpOf({"help", topic}), Topic(""));
}

TEST_F(HelpCommandTest, PrintsTheGeneralHelpForSeveralTopics) {
    EXPECT_EQ(HelpOf({"help", "service", "scan"}), Topic(""));
}

TEST_F(HelpCommandTest, PrintsTheBannerEvenWhenQuiet) {
    EXPECT_EQ(HelpOf({"quiet", "help", "service"}), Topic("service"));
}

TEST_F(HelpCommandTest, IgnoresTheServer) {
    EXPECT_EQ(HelpOf({"server=nowhere", "help"}), Topic(""));
}

}  // namespace
}  // namespace krvcmd
