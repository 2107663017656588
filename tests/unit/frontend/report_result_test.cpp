#include "krvcmd/frontend/report/result_line.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "krvcmd/console/writer/output_object.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

struct Report {
    std::string output;
    std::string errors;
    std::string result;
};

Report ReportOf(BannerFlags flags, const Status& status) {
    GetProgramNames() = {"krvcmd", "Carvoline"};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const Status result = ReportResult(flags, status);
    Report report;
    report.errors = testing::internal::GetCapturedStderr();
    report.output = testing::internal::GetCapturedStdout();
    report.result = test::Text(result);
    return report;
}

constexpr const char* kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";
constexpr BannerFlags kNothingShown{false, false};
constexpr BannerFlags kShown{false, true};
constexpr BannerFlags kQuiet{true, false};

TEST(ErrorMessage, NamesMissingItemsAndWrongCommandLines) {
    EXPECT_EQ(ErrorMessage(Status::SystemError(2)), "Error: No such item present.\n");
    EXPECT_EQ(ErrorMessage(Status::SystemError(22)),
              "Error: Invalid command line parameter. Specify help to get further information.\n");
}

TEST(ErrorMessage, ShowsNumberAndSystemTextOfOtherSystemErrors) {
    for (const int code : {1, 4, 6, 12, 28, 501, 100000}) {
        EXPECT_EQ(ErrorMessage(Status::SystemError(static_cast<uint32_t>(code))),
                  "OS error " + std::to_string(code) + ": " + std::strerror(code) + "\n");
    }
}

TEST(ErrorMessage, ShowsCodeAndTextOfServiceErrors) {
    EXPECT_EQ(ErrorMessage(Status::ServiceError(501, "The slot is empty.")),
              "KRV error 501: The slot is empty.\n");
    // Codes 2 and 22 are nothing special when they come from the service.
    EXPECT_EQ(ErrorMessage(Status::ServiceError(2, "a")), "KRV error 2: a\n");
    EXPECT_EQ(ErrorMessage(Status::ServiceError(22, "b")), "KRV error 22: b\n");
}

TEST(ErrorMessage, KeepsTheColonBeforeAnEmptyText) {
    EXPECT_EQ(ErrorMessage(Status::ServiceError(7, "")), "KRV error 7: \n");
    EXPECT_EQ(ErrorMessage(Status::ServiceError(0, "")), "KRV error 0: \n");
}

TEST(ErrorMessage, ShowsServiceCodesUnsigned) {
    EXPECT_EQ(ErrorMessage(Status::ServiceError(0xFFFFFFFF, "x")), "KRV error 4294967295: x\n");
    EXPECT_EQ(ErrorMessage(Status::ServiceError(0x80000000, "x")), "KRV error 2147483648: x\n");
}

TEST(ReportResult, PrintsBannerAndSuccessMessageOnTheirStreams) {
    const Report report = ReportOf(kNothingShown, Status());
    EXPECT_EQ(report.output, kBanner);
    EXPECT_EQ(report.errors, "Operation completed successfully.\n");
    EXPECT_EQ(report.result, "OK");
}

TEST(ReportResult, PrintsTheBannerOnlyWhenNobodyHasYet) {
    EXPECT_EQ(ReportOf(kShown, Status()).output, "");
    EXPECT_EQ(ReportOf(kShown, Status::SystemError(22)).output, "");
    EXPECT_EQ(ReportOf(kNothingShown, Status::SystemError(22)).output, kBanner);
}

TEST(ReportResult, PrintsNothingForAQuietSuccess) {
    const Report report = ReportOf(kQuiet, Status());
    EXPECT_EQ(report.output, "");
    EXPECT_EQ(report.errors, "");
    EXPECT_EQ(report.result, "OK");
}

TEST(ReportResult, PrintsErrorsEvenWhenQuiet) {
    const Report report = ReportOf(kQuiet, Status::SystemError(2));
    EXPECT_EQ(report.output, "");
    EXPECT_EQ(report.errors, "Error: No such item present.\n");
    EXPECT_EQ(report.result, "error 2");
}

TEST(ReportResult, PrintsALineForAServiceErrorWithCodeZero) {
    const Report report = ReportOf(kShown, Status::ServiceError(0, "odd"));
    EXPECT_EQ(report.errors, "KRV error 0: odd\n");
    EXPECT_EQ(report.result, "service error 0: odd");
}

TEST(ReportResult, ReplacesTheProgramsNamesInServiceTexts) {
    EXPECT_EQ(ReportOf(kShown, Status::ServiceError(9, "[ProductName] is not [CmdLine], [CmdLine]!")).errors,
              "KRV error 9: Carvoline is not krvcmd, krvcmd!\n");
}

TEST(ReportResult, ExecutesNoConversionOfAServiceText) {
    EXPECT_EQ(ReportOf(kShown, Status::ServiceError(9, "100%s %n %d 50%% %")).errors,
              "KRV error 9: 100%s %n %d 50% %\n");
}

TEST(ReportResult, MarksTheBannerAsShown) {
    GetProgramNames() = {"krvcmd", "Carvoline"};
    BannerFlags flags;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(ReportResult(flags, Status()).IsOk());
    (void)testing::internal::GetCapturedStderr();
    EXPECT_EQ(testing::internal::GetCapturedStdout().substr(0, 9), "Carvoline");
    EXPECT_TRUE(flags.bannerShown);
}

}  // namespace
}  // namespace krvcmd
