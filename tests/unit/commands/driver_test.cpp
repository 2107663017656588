#include "krvcmd/frontend/driver/driver.h"

#include <cstring>

#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Words;

constexpr std::string_view kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";
constexpr std::string_view kInvalid =
    "Error: Invalid command line parameter. Specify help to get further information.\n";
constexpr std::string_view kSuccess = "Operation completed successfully.\n";

// Whole runs of the program, from the words to the exit status.
class DriverTest : public test::ServiceTest {
  protected:
    DriverTest() {
        Farm().AddJukebox(8, "Tower").WithMagazine(2);
        GetProgramNames() = {};  // the driver sets them
    }

    int RunWords(const Words& words) {
        GetBannerFlags() = {};
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int exitStatus = RunProgram(words);
        m_errors = testing::internal::GetCapturedStderr();
        m_output = testing::internal::GetCapturedStdout();
        return exitStatus;
    }

    std::string m_output;
    std::string m_errors;
};

TEST_F(DriverTest, RefusesALineWithoutACommand) {
    for (const Words& words : {Words{}, Words{""}, Words{"quiet"}, Words{"server=x"}}) {
        EXPECT_EQ(RunWords(words), 22);
        EXPECT_EQ(m_output, kBanner);
        EXPECT_EQ(m_errors, kInvalid);
    }
    EXPECT_EQ(TakeCalls(), Calls{});
}

// No command object has set the quiet flag when the parser fails.
TEST_F(DriverTest, ShowsTheBannerForAWrongLineEvenWhenQuiet) {
    for (const Words& words : {Words{"quiet", "xyz"}, Words{"quiet", "q"}, Words{"quiet", "query", "xyz"}}) {
        EXPECT_EQ(RunWords(words), 22);
        EXPECT_EQ(m_output, kBanner);
        EXPECT_EQ(m_errors, kInvalid);
    }
}

TEST_F(DriverTest, ShowsTheBannerForACommandThatRefusesItsParametersEvenWhenQuiet) {
    EXPECT_EQ(RunWords({"quiet", "service"}), 22);
    EXPECT_EQ(m_output, kBanner);
    EXPECT_EQ(m_errors, kInvalid);
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(DriverTest, ReportsSuccess) {
    EXPECT_EQ(RunWords({"export", "J@8", "S1"}), 0);
    EXPECT_EQ(m_output, kBanner);
    EXPECT_EQ(m_errors, kSuccess);
}

TEST_F(DriverTest, PrintsNothingForAQuietSuccess) {
    EXPECT_EQ(RunWords({"quiet", "export", "J@8", "S1"}), 0);
    EXPECT_EQ(m_output, "");
    EXPECT_EQ(m_errors, "");
}

TEST_F(DriverTest, PrintsErrorsOfAQuietCommandWithoutTheBanner) {
    EXPECT_EQ(RunWords({"quiet", "scan", "J@8", "M5"}), 2);
    EXPECT_EQ(m_output, "");
    EXPECT_EQ(m_errors, "Error: No such item present.\n");
}

TEST_F(DriverTest, ReportsAnUnknownJukeboxAsASystemError) {
    EXPECT_EQ(RunWords({"scan", "J", "nobody"}), 6);
    EXPECT_EQ(m_output, kBanner);
    EXPECT_EQ(m_errors, std::string("OS error 6: ") + std::strerror(6) + "\n");
}

TEST_F(DriverTest, ExitsWithTheCodeOfAServiceError) {
    Fake().FailCall("KrvMediaExport", Occurrence::Every(), {99, "The robot is on holiday."});
    EXPECT_EQ(RunWords({"export", "J@8", "S1"}), 99);
    EXPECT_EQ(m_output, kBanner);
    EXPECT_EQ(m_errors, "KRV error 99: The robot is on holiday.\n");
}

TEST_F(DriverTest, ReportsAServiceErrorWithCodeZeroThoughItsExitStatusIsZero) {
    Fake().FailCall("KrvMediaExport", Occurrence::Every(), {0, ""});
    EXPECT_EQ(RunWords({"export", "J@8", "S1"}), 0);
    EXPECT_EQ(m_errors, "KRV error 0: \n");
}

TEST_F(DriverTest, ReportsNothingBehindHelp) {
    for (const Words& words : {Words{"help"}, Words{"?"}, Words{"help", "scan"}, Words{"quiet", "help"}}) {
        EXPECT_EQ(RunWords(words), 0);
        EXPECT_TRUE(m_output.starts_with(kBanner));
        EXPECT_EQ(m_errors, "");
    }
}

TEST_F(DriverTest, ReportsTheRefusalOfColumnsWithoutATable) {
    EXPECT_EQ(RunWords({"query", "volumes", "columns=IQ"}), 22);
    EXPECT_EQ(m_output, kBanner);
    EXPECT_EQ(m_errors, kInvalid);
}

TEST_F(DriverTest, PrintsBareRowsWithoutBannerAndSuccessMessage) {
    EXPECT_EQ(RunWords({"query", "jukeboxes", "col=JN", "notable"}), 0);
    EXPECT_EQ(m_output, "8|Tower\n");
    EXPECT_EQ(m_errors, "");
}

TEST_F(DriverTest, ExecutesNothingWithoutACommandNode) {
    const ParameterList line;
    EXPECT_EQ(test::Text(ExecuteCommandLine(line)), "error 22");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(DriverTest, ExecutesNothingForANodeThatIsNoCommand) {
    ParameterList line;
    line.command = &test::Node("quiet");
    EXPECT_EQ(test::Text(ExecuteCommandLine(line)), "error 22");
    EXPECT_EQ(TakeCalls(), Calls{});
}

}  // namespace
}  // namespace krvcmd
