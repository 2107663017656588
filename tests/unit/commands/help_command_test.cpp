#include "krvcmd/frontend/report/help.h"
#include "tests/support/captured_output.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using test::Calls;
using test::Outcome;
using test::Words;

constexpr std::string_view kHelpBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";

class HelpCommandTest : public test::CommandTest {
  protected:
    // What the command prints below the banner. It makes no call, and the rest of the run is quiet.
    std::string HelpOf(const Words& words) {
        GetBannerFlags() = {};
        const Outcome outcome = Run(words);
        EXPECT_EQ(outcome.status, "OK");
        EXPECT_EQ(outcome.calls, Calls{});
        EXPECT_TRUE(outcome.output.starts_with(kHelpBanner));
        EXPECT_TRUE(GetBannerFlags().quiet);
        EXPECT_TRUE(GetBannerFlags().bannerShown);
        return outcome.output.substr(kHelpBanner.size());
    }

    std::string Topic(std::string_view word) {
        return test::OutputOf([&] {
            PrintHelp(word, Writer());
            EXPECT_TRUE(Writer().Finish().IsOk());
        });
    }
};

TEST_F(HelpCommandTest, PrintsTheHelpOfItsOneTopic) {
    struct Row {
        Words words;
        std::string_view topic;
    };
    const Row rows[] = {
        {{"help"}, ""},
        {{"?"}, ""},
        {{"help", "service"}, "service"},
        {{"help", "qu"}, "query"},
        {{"help", "?"}, "?"},
        {{"help", "=scan"}, "scan"},
        {{"help", "= x"}, " x"},
        {{"help", "xyz"}, ""},
        {{"help", "service", "scan"}, ""},  // several topics are none
    };
    for (const Row& row : rows)
        EXPECT_EQ(HelpOf(row.words), Topic(row.topic)) << test::Spelled(row.words);
}

TEST_F(HelpCommandTest, PrintsTheBannerEvenWhenQuiet) {
    EXPECT_EQ(HelpOf({"quiet", "help", "service"}), Topic("service"));
}

TEST_F(HelpCommandTest, IgnoresTheServer) {
    EXPECT_EQ(HelpOf({"server=nowhere", "help"}), Topic(""));
}

}  // namespace
}  // namespace krvcmd
