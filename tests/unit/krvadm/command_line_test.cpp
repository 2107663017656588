// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include "tests/unit/krvadm/tool_run.h"
#include "tools/krvadm/tool.h"

namespace embedded::tools {
namespace {

TEST(KrvadmCommandLineTest, ExplainsItself) {
    const ToolRun run = RunKrvadm({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    for (const char* command : {"discover", "inventory"})
        EXPECT_NE(run.out.find(command), std::string::npos) << command;
}

TEST(KrvadmCommandLineTest, ExplainsEachCommand) {
    for (const char* command : {"discover", "inventory"}) {
        const ToolRun run = RunKrvadm({command, "--help"});
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.out.find("--credentials"), std::string::npos);
        EXPECT_NE(run.out.find("--json"), std::string::npos);
    }
}

TEST(KrvadmCommandLineTest, RefusesWordsThatItDoesNotKnow) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{},
                                                  {"destroy"},
                                                  {"discover", "--secret", "x"},
                                                  {"inventory"},
                                                  {"inventory", "a", "b"}}) {
        const ToolRun run = RunKrvadm(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(run.err.starts_with("krvadm: ")) << run.err;
        EXPECT_TRUE(run.err.ends_with("\nRun with --help for more information.\n")) << run.err;
    }
}

TEST(KrvadmCommandLineTest, RefusesAPortalOfAnotherForm) {
    const ToolRun run = RunKrvadm({"discover", "--portal", "tower:99999"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err,
              "krvadm: --portal: \"tower:99999\" is not of the form HOST, HOST:PORT or [IPV6]:PORT\n");
}

TEST(KrvadmCommandLineTest, RefusesASecretAmongTheWordsAndDoesNotRepeatIt) {
    const ToolRun run = RunKrvadm({"inventory", "iscsi://operator%sesame@tower/t/1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "krvadm: an iSCSI address must not hold a user or a password: anybody could read it; put them "
              "into a file\n");
}

TEST(KrvadmCommandLineTest, TellsWhatSpeaksAgainstADevice) {
    EXPECT_EQ(RunKrvadm({"inventory", "/dev/no-such-device"}).err,
              "krvadm: /dev/no-such-device does not exist\n");
    EXPECT_EQ(RunKrvadm({"inventory", "/dev/null"}).err, "krvadm: /dev/null is no SCSI device\n");
    EXPECT_EQ(RunKrvadm({"inventory", "/dev/null"}).status, 1);
}

TEST(KrvadmDiscoverTest, FindsNothingOnAMachineWithoutScsi) {
    std::ostringstream out;
    std::ostringstream err;
    DiscoverOptions options;
    options.sysfs = "/no-such-folder";
    Discover(options, {out, err});
    EXPECT_EQ(out.str(), "No changer was found.\n");
    out.str("");
    options.form = OutputForm::Json;
    Discover(options, {out, err});
    EXPECT_EQ(out.str(), "{\n  \"changers\": [],\n  \"otherDrives\": []\n}\n");
    EXPECT_EQ(err.str(), "");
}

}  // namespace
}  // namespace embedded::tools
