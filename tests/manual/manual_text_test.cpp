#include "packaging/generate/manual_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "packaging/generate/manual_blocks.h"

namespace krvcmd {
namespace {

TEST(ManualText, KeepsEveryCharacterAsItIs) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"plain text", "plain text"},
        {R"(a\b)", R"(a\eb)"},
        {"read-only", "read\\-only"},
        {"it's", "it\\(aqs"},
        {R"("x")", R"(\(dqx\(dq)"},
        {"`~^", R"(\(ga\(ti\(ha)"},
        {".A", "\\&.A"},
        {"'a", "\\(aqa"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ManualText(c.text), c.expected) << c.text;
}

TEST(ManualText, BreaksLinesWithoutMakingRequestsOfThem) {
    // 26 times three characters and the second to last blank are 78 characters; ".A" does not fit.
    std::string text;
    for (int i = 0; i < 26; ++i)
        text += "ab ";
    std::string first = text;
    first.pop_back();
    EXPECT_EQ(ManualText(text + ".A cd"), first + "\n\\&.A cd");
}

TEST(ManualSyntax, ShowsWordsBoldAndPlaceholdersInItalics) {
    EXPECT_EQ(ManualSyntax("krvcmd name J <jukebox> [.A|.B]"),
              "\\fBkrvcmd\\fR \\fBname\\fR \\fBJ\\fR \\fIjukebox\\fR [\\fB.A\\fR|\\fB.B\\fR]");
    EXPECT_EQ(ManualSyntax("sort=<sort>"), "\\fBsort=\\fR\\fIsort\\fR");
}

TEST(ManualProse, ShowsNamesBold) {
    EXPECT_EQ(ManualProse("`*count` is -1."), "\\fB*count\\fR is \\-1.");
}

TEST(ManualBlock, RefusesWhatThereIsNot) {
    EXPECT_THROW((void)ManualBlock("colours", ""), std::runtime_error);
    EXPECT_THROW((void)ManualBlock("parameters", "delete"), std::runtime_error);
    EXPECT_THROW((void)ManualBlock("syntax", ""), std::runtime_error);
    EXPECT_THROW((void)ManualBlock("file", "docs/no-such-file"), std::runtime_error);
}

TEST(ManualBlock, ListsParametersAsTheyAreTyped) {
    EXPECT_EQ(ManualBlock("parameters", "import"),
              ".TP\n\\fBrepeat\\fR\\fB=\\fR\\fInumber\\fR\nspecifies number of repeats, eg. repeat=5\n");
    EXPECT_EQ(ManualBlock("addresses", "import"),
              "Items are addressed by \\fBJ\\fR, \\fBM\\fR and \\fBS\\fR.\n");
}

}  // namespace
}  // namespace krvcmd
