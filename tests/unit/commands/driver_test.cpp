#include "krvcmd/frontend/driver/driver.h"

#include <cstring>

#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Words;

const std::string kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";
const std::string kInvalid =
    "Error: Invalid command line parameter. Specify help to get further information.\n";
const std::string kSuccess = "Operation completed successfully.\n";

// One run of the program, from the words to the exit status.
struct ProgramRun {
    Words words;
    int exitStatus;
    std::string output;
    std::string errors;
};

class DriverTest : public test::ServiceTest {
  protected:
    DriverTest() {
        Farm().AddJukebox(8, "Tower").WithMagazine(2);
        GetProgramNames() = {};  // the driver sets them
    }

    static void Expect(const ProgramRun& run) {
        GetBannerFlags() = {};
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int exitStatus = RunProgram(run.words);
        const std::string errors = testing::internal::GetCapturedStderr();
        const std::string output = testing::internal::GetCapturedStdout();
        const std::string words = test::Spelled(run.words);
        EXPECT_EQ(exitStatus, run.exitStatus) << words;
        EXPECT_EQ(output, run.output) << words;
        EXPECT_EQ(errors, run.errors) << words;
    }
};

TEST_F(DriverTest, RefusesALineWithoutACommand) {
    for (const Words& words : {Words{}, Words{""}, Words{"quiet"}, Words{"server=x"}})
        Expect({words, 22, kBanner, kInvalid});
    EXPECT_EQ(TakeCalls(), Calls{});
}

// Only a command that starts its work sets the quiet flag.
TEST_F(DriverTest, ShowsTheBannerForAWrongLineEvenWhenQuiet) {
    for (const Words& words :
         {Words{"quiet", "xyz"}, Words{"quiet", "query", "xyz"}, Words{"quiet", "service"}})
        Expect({words, 22, kBanner, kInvalid});
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(DriverTest, ReportsHowTheCommandEnded) {
    Expect({{"export", "J@8", "S1"}, 0, kBanner, kSuccess});
    Expect({{"quiet", "export", "J@8", "S1"}, 0, "", ""});
    Expect({{"quiet", "scan", "J@8", "M5"}, 2, "", "Error: No such item present.\n"});
    Expect({{"scan", "J", "nobody"}, 6, kBanner, std::string("OS error 6: ") + std::strerror(6) + "\n"});
    Expect({{"query", "volumes", "columns=IQ"}, 22, kBanner, kInvalid});
}

TEST_F(DriverTest, ExitsWithTheCodeOfAServiceError) {
    Fake().FailCall("KrvMediaExport", Occurrence::Every(), {99, "The robot is on holiday."});
    Expect({{"export", "J@8", "S1"}, 99, kBanner, "KRV error 99: The robot is on holiday.\n"});
}

TEST_F(DriverTest, ReportsAServiceErrorWithCodeZeroAlthoughItExitsWithZero) {
    Fake().FailCall("KrvMediaExport", Occurrence::Every(), {0, ""});
    Expect({{"export", "J@8", "S1"}, 0, kBanner, "KRV error 0: \n"});
}

TEST_F(DriverTest, PrintsNoResultLineAfterHelp) {
    for (const Words& words : {Words{"help", "?"}, Words{"quiet", "help", "?"}})
        Expect({words, 0, kBanner + "usage/help output\n", ""});
}

TEST_F(DriverTest, PrintsBareRowsWithoutBannerAndSuccessMessage) {
    Expect({{"query", "jukeboxes", "col=JN", "notable"}, 0, "8|Tower\n", ""});
}

TEST_F(DriverTest, ExecutesNothingWithoutTheNodeOfACommand) {
    Ostrel::UI::Console::COutputObject writer;
    for (const KeywordNode* node : {static_cast<const KeywordNode*>(nullptr), &test::Node("quiet")}) {
        ParameterList line;
        line.command = node;
        EXPECT_EQ(test::Text(ExecuteCommandLine(line, writer)), "error 22");
    }
    EXPECT_EQ(TakeCalls(), Calls{});
}

}  // namespace
}  // namespace krvcmd
