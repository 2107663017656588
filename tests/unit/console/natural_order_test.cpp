#include "krvcmd/console/text/natural_order.h"

#include <gtest/gtest.h>

namespace {

using namespace Ostrel::UI::Console;

struct SplitCase {
    std::string_view text;
    std::string_view prefix;
    int32_t number;
};

TEST(SplitTrailingNumber, SplitsOffANumberAfterASeparator) {
    const SplitCase cases[] = {
        {"Disc-12", "Disc", 12},
        {"Disc@12", "Disc", 12},
        {"Disc,12", "Disc", 12},
        {"Disc;12", "Disc", 12},
        {"Disc:12", "Disc", 12},
        {"Disc.12", "Disc", 12},
        {"Disc 12", "Disc", 12},
        {"Disc-007", "Disc", 7},
        {"a-1-2", "a-1", 2},
        {"a--2", "a-", 2},
        {"12-34", "12", 34},
        // The separator is the first character.
        {"-5", "", 5},
    };
    for (const SplitCase& c : cases) {
        const NumberedText split = SplitTrailingNumber(c.text);
        EXPECT_EQ(split.text, c.prefix) << c.text;
        EXPECT_EQ(split.number, c.number) << c.text;
    }
}

TEST(SplitTrailingNumber, LeavesOtherTextsWhole) {
    for (const std::string_view text :
         {"", "a", "Disc", "Disc12", "Disc_12", "Disc/12", "Disc\\12", "Disc-12a",
          // ends in the separator
          "Disc-", "-", " ",
          // digits only
          "7", "2024", "50%", "%",
          // a percent sign counts in the last place only
          "a-5%%", "a-5%x", "a-%5"}) {
        const NumberedText split = SplitTrailingNumber(text);
        EXPECT_EQ(split.text, text);
        EXPECT_EQ(split.number, 0) << text;
    }
}

TEST(SplitTrailingNumber, StepsOverAPercentSignInTheLastPlace) {
    EXPECT_EQ(SplitTrailingNumber("full 50%").text, "full");
    EXPECT_EQ(SplitTrailingNumber("full 50%").number, 50);
    // No digit between separator and sign.
    EXPECT_EQ(SplitTrailingNumber("full-%").text, "full");
    EXPECT_EQ(SplitTrailingNumber("full-%").number, 0);
}

TEST(SplitTrailingNumber, StopsAtTheLargestNumber) {
    EXPECT_EQ(SplitTrailingNumber("a-2147483647").number, 2147483647);
    EXPECT_EQ(SplitTrailingNumber("a-2147483648").number, 2147483647);
    EXPECT_EQ(SplitTrailingNumber("a-99999999999999999999999999").number, 2147483647);
    EXPECT_EQ(SplitTrailingNumber("a-00000000000000000000000012").number, 12);
}

TEST(CompareNumberedTexts, ComparesTextsFirstAndThenNumbers) {
    EXPECT_EQ(CompareNumberedTexts({"a", 9}, {"b", 1}), -1);
    EXPECT_EQ(CompareNumberedTexts({"b", 1}, {"a", 9}), 1);
    EXPECT_EQ(CompareNumberedTexts({"a", 1}, {"a", 9}), -1);
    EXPECT_EQ(CompareNumberedTexts({"a", 9}, {"a", 1}), 1);
    EXPECT_EQ(CompareNumberedTexts({"a", 9}, {"a", 9}), 0);
    EXPECT_EQ(CompareNumberedTexts({"", -1}, {"", 1}), -1);
    EXPECT_EQ(CompareNumberedTexts({"", 5}, {"a", 1}), -1);
}

}  // namespace
