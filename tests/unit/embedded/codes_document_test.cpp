// The page for users lists exactly the codes and texts that the service answers.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "embedded/model/refusal.h"

namespace embedded_test {
namespace {

std::string ReadCodesPage() {
    std::ifstream file(KRVSIM_PAGE, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string TableRows() {
    std::string rows;
    for (const embedded::CodeInfo& info : embedded::AllCodes()) {
        rows += "| " + std::to_string(static_cast<int32_t>(info.code)) + " | `" + info.text + "` | " +
                info.meaning + " |\n";
    }
    return rows;
}

TEST(CodesDocument, TableIsTheOneOfTheProgram) {
    const std::string page = ReadCodesPage();
    const std::string head = "| Code | Text | When |\n|---|---|---|\n";
    const size_t start = page.find(head);
    ASSERT_NE(start, std::string::npos);
    const size_t first = start + head.size();
    EXPECT_EQ(page.substr(first, page.find("\n\n", first) + 1 - first), TableRows());
}

TEST(CodesDocument, CodesRiseAndNoneIsThereTwice) {
    int32_t last = 0;
    for (const embedded::CodeInfo& info : embedded::AllCodes()) {
        EXPECT_GT(static_cast<int32_t>(info.code), last);
        last = static_cast<int32_t>(info.code);
    }
}

TEST(CodesDocument, CodesAreTheServicesOwnOrStartAt1000) {
    const std::set<int32_t> own = {3, 4, 7, 500, 501, 502};
    for (const embedded::CodeInfo& info : embedded::AllCodes()) {
        const auto code = static_cast<int32_t>(info.code);
        EXPECT_TRUE(code >= 1000 || own.contains(code)) << code;
    }
}

TEST(CodesDocument, OwnCodesLookLikeNoOtherResultInEightBits) {
    const std::set<int32_t> taken = {0, 1, 2, 3, 4, 6, 7, 12, 22, 28, 255};
    for (const embedded::CodeInfo& info : embedded::AllCodes()) {
        const auto code = static_cast<int32_t>(info.code);
        if (code >= 1000) {
            EXPECT_FALSE(taken.contains(code & 0xFF)) << code;
        }
    }
}

TEST(CodesDocument, EveryTextIsOneSentence) {
    for (const embedded::CodeInfo& info : embedded::AllCodes()) {
        const std::string text = info.text;
        EXPECT_TRUE(text.ends_with('.')) << text;
        EXPECT_EQ(text.find(". "), std::string::npos) << text;
        EXPECT_NE(text.find('<'), std::string::npos) << text << " names no item";
    }
}

TEST(Refusals, PutValuesIntoTheTextInOrder) {
    const embedded::Refusal refusal = embedded::Refuse(embedded::Code::NoSlot, {"2", "My <Box>", "7"});
    EXPECT_EQ(refusal.GetCode(), 1103);
    EXPECT_EQ(refusal.GetText(), "Magazine 2 of jukebox \"My <Box>\" has no slot 7.");
}

}  // namespace
}  // namespace embedded_test
