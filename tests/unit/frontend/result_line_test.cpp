#include "krvcmd/frontend/report/result_line.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "krvcmd/console/writer/output_object.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using Ostrel::UI::Console::COutputObject;

const std::string kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";
constexpr const char* kSuccess = "Operation completed successfully.\n";

// What a report prints, and the banner flags and the result that it leaves.
struct Report {
    std::string output;
    std::string errors;
    std::string result;
    BannerFlags flags;
};

template <class Print>
Report Printed(BannerFlags flags, Print print) {
    GetProgramNames() = {"krvcmd", "Carvoline"};
    COutputObject writer;
    Report report{{}, {}, {}, flags};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    report.result = test::Text(print(report.flags, writer));
    report.errors = testing::internal::GetCapturedStderr();
    report.output = testing::internal::GetCapturedStdout();
    return report;
}

Report BannerWith(BannerFlags flags) {
    return Printed(flags, PrintBanner);
}

Report ReportOf(BannerFlags flags, const Status& status) {
    return Printed(flags, [&](BannerFlags& shared, COutputObject& writer) {
        return ReportResult(shared, status, writer);
    });
}

constexpr BannerFlags kNothingShown{false, false};
constexpr BannerFlags kShown{false, true};
constexpr BannerFlags kQuiet{true, false};

TEST(PrintBanner, PrintsTheBannerOnceAndNeverWhenQuiet) {
    const Report first = BannerWith(kNothingShown);
    EXPECT_EQ(first.output, kBanner);
    EXPECT_TRUE(first.flags.bannerShown);
    EXPECT_FALSE(first.flags.quiet);

    EXPECT_EQ(BannerWith(kShown).output, "");

    const Report quiet = BannerWith(kQuiet);
    EXPECT_EQ(quiet.output, "");
    EXPECT_FALSE(quiet.flags.bannerShown);
}

TEST(GetBannerFlags, StartClearAndAreSharedByTheWholeProgram) {
    EXPECT_FALSE(GetBannerFlags().quiet);
    EXPECT_FALSE(GetBannerFlags().bannerShown);
    EXPECT_EQ(&GetBannerFlags(), &GetBannerFlags());
}

TEST(ResultText, TellsSuccess) {
    EXPECT_EQ(ResultText(Status()), kSuccess);
}

TEST(ResultText, NamesMissingItemsAndWrongCommandLines) {
    EXPECT_EQ(ResultText(Status::SystemError(2)), "Error: No such item present.\n");
    EXPECT_EQ(ResultText(Status::SystemError(22)),
              "Error: Invalid command line parameter. Specify help to get further information.\n");
}

TEST(ResultText, ShowsNumberAndSystemTextOfOtherSystemErrors) {
    for (const int code : {1, 4, 6, 12, 28, 501, 100000}) {
        EXPECT_EQ(ResultText(Status::SystemError(static_cast<uint32_t>(code))),
                  "OS error " + std::to_string(code) + ": " + std::strerror(code) + "\n");
    }
}

TEST(ResultText, ShowsUnsignedCodeAndTextOfServiceErrors) {
    struct Row {
        uint32_t code;
        const char* message;
        const char* expected;
    };
    const Row rows[] = {
        {501, "The slot is empty.", "KRV error 501: The slot is empty.\n"},
        {2, "a", "KRV error 2: a\n"},  // 2 and 22 are nothing special when they come from the service
        {22, "b", "KRV error 22: b\n"},
        {7, "", "KRV error 7: \n"},
        {0, "", "KRV error 0: \n"},
        {0x80000000, "x", "KRV error 2147483648: x\n"},
        {0xFFFFFFFF, "x", "KRV error 4294967295: x\n"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ResultText(Status::ServiceError(row.code, row.message)), row.expected);
}

TEST(ReportResult, PrintsBannerAndResultLineEachToItsStream) {
    struct Row {
        BannerFlags flags;
        Status status;
        std::string output;
        std::string errors;
        std::string result;
    };
    const Row rows[] = {
        {kNothingShown, Status(), kBanner, kSuccess, "OK"},
        {kShown, Status(), "", kSuccess, "OK"},
        {kQuiet, Status(), "", "", "OK"},
        {kNothingShown, Status::SystemError(2), kBanner, "Error: No such item present.\n", "error 2"},
        {kShown, Status::SystemError(2), "", "Error: No such item present.\n", "error 2"},
        {kQuiet, Status::SystemError(2), "", "Error: No such item present.\n", "error 2"},
        {kQuiet, Status::ServiceError(0, "odd"), "", "KRV error 0: odd\n", "service error 0: odd"},
    };
    for (const Row& row : rows) {
        const Report report = ReportOf(row.flags, row.status);
        EXPECT_EQ(report.output, row.output);
        EXPECT_EQ(report.errors, row.errors);
        EXPECT_EQ(report.result, row.result);
        EXPECT_EQ(report.flags.bannerShown, !row.flags.quiet);
    }
}

TEST(ReportResult, ReplacesPlaceholdersInServiceTexts) {
    EXPECT_EQ(ReportOf(kShown, Status::ServiceError(9, "[ProductName] is not [CmdLine], [CmdLine]!")).errors,
              "KRV error 9: Carvoline is not krvcmd, krvcmd!\n");
}

TEST(ReportResult, ShowsPercentSignsOfServiceTexts) {
    EXPECT_EQ(ReportOf(kShown, Status::ServiceError(9, "100%s %n %d 50%% %")).errors,
              "KRV error 9: 100%s %n %d 50% %\n");
}

}  // namespace
}  // namespace krvcmd
