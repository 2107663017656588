#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "tests/e2e/case_file.h"
#include "tests/e2e/expect_outcome.h"
#include "tests/e2e/program.h"
#include "tests/e2e/shell_words.h"

namespace e2e {
namespace {

// A walk over a jukebox of two magazines with two slots each, in which one slot answers with a code.
// `touched` are the slots that the command touches when the code comes from the first, second, third and
// fourth slot that it touches; "!" means that the run ends with the code as its error.
struct Walk {
    const char* words;
    const char* function;
    int code;
    std::array<const char*, 4> touched;
};

constexpr const char* kFarm =
    "jukebox 8 name=Tower\n"
    "magazine slots=2\n"
    "magazine slots=2\n";

// The slots that the function was called for, as digits: magazine 2 begins with slot 3.
std::string Touched(const Outcome& outcome, const std::string& function) {
    std::string slots;
    for (const std::string& call : outcome.calls) {
        if (!call.starts_with(function)) continue;
        const int magazine = call.at(call.find("M=") + 2) - '0';
        const int slot = call.at(call.find("S=") + 2) - '0';
        slots += static_cast<char>('1' + 2 * magazine + slot);
    }
    return slots;
}

void ExpectWalk(const Walk& walk) {
    for (size_t position = 0; position < walk.touched.size(); ++position) {
        SCOPED_TRACE(std::string(walk.words) + ", code " + std::to_string(walk.code) + " at slot " +
                     std::to_string(position + 1));
        e2e::Run run;
        run.words = SplitShellWords(std::string("quiet ") + walk.words);
        run.script = std::string(kFarm) + "fail " + walk.function + " nth=" + std::to_string(position + 1) +
                     " code=" + std::to_string(walk.code) + " text=stop\n";
        const Outcome outcome = RunProgram(run);
        std::string expected = walk.touched[position];
        const bool fails = expected.ends_with('!');
        if (fails) expected.pop_back();
        const std::string error = fails ? "KRV error " + std::to_string(walk.code) + ": stop\n" : "";
        EXPECT_EQ(Touched(outcome, walk.function), expected);
        EXPECT_EQ(outcome.standardError, error);
        EXPECT_EQ(outcome.standardOutput, "");
        EXPECT_EQ(outcome.exitStatus, fails ? walk.code & 0xFF : 0);
        ExpectCleanCalls(outcome);
    }
}

void ExpectWalks(const std::vector<Walk>& walks) {
    for (const Walk& walk : walks)
        ExpectWalk(walk);
}

TEST(Walks, ImportsIntoAWholeJukebox) {
    ExpectWalks({
        // 501: no further medium, 502: the slot cannot be used, 4: done already
        {"import J@8", "KrvMediaImport", 501, {"1", "12", "123", "1234"}},
        {"import J@8", "KrvMediaImport", 502, {"1234", "1234", "1234", "1234"}},
        {"import J@8", "KrvMediaImport", 4, {"1234", "1234", "1234", "1234"}},
        {"import J@8", "KrvMediaImport", 7, {"1!", "12!", "123!", "1234!"}},
        {"import J@8", "KrvMediaImport", 2, {"1", "12", "123", "1234"}},
        {"import J@8", "KrvMediaImport", 9, {"1!", "12!", "123!", "1234!"}},
    });
}

TEST(Walks, ImportsIntoOneMagazine) {
    ExpectWalks({
        {"import J@8 M2", "KrvMediaImport", 501, {"3", "34", "34", "34"}},
        {"import J@8 M2", "KrvMediaImport", 502, {"34", "34", "34", "34"}},
        {"import J@8 M2", "KrvMediaImport", 4, {"34", "34", "34", "34"}},
        {"import J@8 M2", "KrvMediaImport", 7, {"3!", "34!", "34", "34"}},
        {"import J@8 M2", "KrvMediaImport", 2, {"3", "34", "34", "34"}},
        {"import J@8 M2", "KrvMediaImport", 9, {"3!", "34!", "34", "34"}},
    });
}

TEST(Walks, ImportsWithARepeatCount) {
    ExpectWalks({
        {"import J@8 repeat=2", "KrvMediaImport", 501, {"1", "12", "12", "12"}},
        {"import J@8 repeat=2", "KrvMediaImport", 502, {"123", "123", "12", "12"}},
        {"import J@8 repeat=2", "KrvMediaImport", 4, {"12", "12", "12", "12"}},
        {"import J@8 repeat=2", "KrvMediaImport", 7, {"1!", "12!", "12", "12"}},
        {"import J@8 repeat=2", "KrvMediaImport", 2, {"1", "12", "12", "12"}},
        {"import J@8 repeat=2", "KrvMediaImport", 9, {"1!", "12!", "12", "12"}},
        {"import J@8 S2 repeat=2", "KrvMediaImport", 502, {"234", "234", "23", "23"}},
        {"import J@8 M1 repeat=9", "KrvMediaImport", 502, {"1234", "1234", "1234", "1234"}},
    });
}

TEST(Walks, ExportsFromAWholeJukebox) {
    ExpectWalks({
        {"export J@8", "KrvMediaExport", 501, {"1234", "1234", "1234", "1234"}},
        {"export J@8", "KrvMediaExport", 502, {"1234", "1234", "1234", "1234"}},
        {"export J@8", "KrvMediaExport", 4, {"1234", "1234", "1234", "1234"}},
        {"export J@8", "KrvMediaExport", 7, {"1!", "12!", "123!", "1234!"}},
        {"export J@8", "KrvMediaExport", 2, {"1", "12", "123", "1234"}},
        {"export J@8", "KrvMediaExport", 9, {"1!", "12!", "123!", "1234!"}},
    });
}

TEST(Walks, ExportsWithARepeatCount) {
    ExpectWalks({
        {"export J@8 repeat=2", "KrvMediaExport", 501, {"123", "123", "12", "12"}},
        {"export J@8 repeat=2", "KrvMediaExport", 502, {"123", "123", "12", "12"}},
        {"export J@8 repeat=2", "KrvMediaExport", 4, {"12", "12", "12", "12"}},
        {"export J@8 repeat=2", "KrvMediaExport", 7, {"1!", "12!", "12", "12"}},
        {"export J@8 repeat=2", "KrvMediaExport", 2, {"1", "12", "12", "12"}},
        {"export J@8 repeat=2", "KrvMediaExport", 9, {"1!", "12!", "12", "12"}},
        {"export J@8 M2 repeat=9", "KrvMediaExport", 501, {"34", "34", "34", "34"}},
    });
}

TEST(Walks, ScansAWholeJukebox) {
    ExpectWalks({
        {"scan J@8", "KrvMediaScan", 501, {"1234", "1234", "1234", "1234"}},
        {"scan J@8", "KrvMediaScan", 502, {"1234", "1234", "1234", "1234"}},
        {"scan J@8", "KrvMediaScan", 4, {"1234", "1234", "1234", "1234"}},
        {"scan J@8", "KrvMediaScan", 7, {"1!", "12!", "123!", "1234!"}},
        {"scan J@8", "KrvMediaScan", 2, {"1", "12", "123", "1234"}},
        {"scan J@8", "KrvMediaScan", 9, {"1!", "12!", "123!", "1234!"}},
    });
}

TEST(Walks, FinalizesAWholeJukebox) {
    ExpectWalks({
        {"format J@8 finalize", "KrvVolumeFinalize", 501, {"1234", "1234", "1234", "1234"}},
        {"format J@8 finalize", "KrvVolumeFinalize", 502, {"1234", "1234", "1234", "1234"}},
        {"format J@8 finalize", "KrvVolumeFinalize", 4, {"1!", "12!", "123!", "1234!"}},
        {"format J@8 finalize", "KrvVolumeFinalize", 7, {"1!", "12!", "123!", "1234!"}},
        {"format J@8 finalize", "KrvVolumeFinalize", 2, {"1", "12", "123", "1234"}},
        {"format J@8 finalize", "KrvVolumeFinalize", 9, {"1!", "12!", "123!", "1234!"}},
    });
}

TEST(Walks, QueriesAWholeJukebox) {
    ExpectWalks({
        {"query slots J@8 notable", "KrvGetSlot", 501, {"1234", "1234", "1234", "1234"}},
        {"query slots J@8 notable", "KrvGetSlot", 502, {"1234", "1234", "1234", "1234"}},
        {"query slots J@8 notable", "KrvGetSlot", 4, {"1!", "12!", "123!", "1234!"}},
        {"query slots J@8 notable", "KrvGetSlot", 7, {"1!", "12!", "123!", "1234!"}},
        {"query slots J@8 notable", "KrvGetSlot", 2, {"1", "12", "123", "1234"}},
        {"query slots J@8 notable", "KrvGetSlot", 9, {"1!", "12!", "123!", "1234!"}},
    });
}

// A single slot is no walk: whatever it answers is the result, but for the codes that mean "done".
TEST(Walks, TouchesASingleSlotOnce) {
    for (const int code : {501, 502, 7, 9}) {
        ExpectWalks({
            {"import J@8 S3", "KrvMediaImport", code, {"3!", "3", "3", "3"}},
            {"export J@8 S3", "KrvMediaExport", code, {"3!", "3", "3", "3"}},
            {"scan J@8 S3", "KrvMediaScan", code, {"3!", "3", "3", "3"}},
            {"format J@8 S3 finalize", "KrvVolumeFinalize", code, {"3!", "3", "3", "3"}},
            {"query slots J@8 S3 notable", "KrvGetSlot", code, {"3!", "3", "3", "3"}},
        });
    }
    ExpectWalks({
        {"import J@8 S3", "KrvMediaImport", 4, {"3", "3", "3", "3"}},
        {"export J@8 S3", "KrvMediaExport", 4, {"3", "3", "3", "3"}},
        {"scan J@8 S3", "KrvMediaScan", 4, {"3", "3", "3", "3"}},
        {"import J@8 S3", "KrvMediaImport", 2, {"3", "3", "3", "3"}},
        {"export J@8 S3", "KrvMediaExport", 2, {"3", "3", "3", "3"}},
        {"format J@8 S3 finalize", "KrvVolumeFinalize", 2, {"3", "3", "3", "3"}},
        {"query slots J@8 S3 notable", "KrvGetSlot", 2, {"3", "3", "3", "3"}},
        {"format J@8 S3 finalize", "KrvVolumeFinalize", 4, {"3!", "3", "3", "3"}},
    });
}

}  // namespace
}  // namespace e2e
