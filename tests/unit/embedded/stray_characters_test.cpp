#include "embedded/layout/stray_characters.h"

#include <gtest/gtest.h>

namespace embedded_test {
namespace {

// The line of the first stray character; 0 when there is none.
int StrayLine(std::string_view text) {
    const auto problem = embedded::FindStrayCharacter(text);
    return problem.has_value() ? problem->line : 0;
}

TEST(StrayCharacters, AreNoneInTextsAndComments) {
    for (const char* text :
         {"", "a = 1\n", "# \xC3\xBC\n", "a = \"\xC3\xBC\"", "a = '\xC3\xBC'",
          "a = \"\\\"\xC3\xBC\" # \xC3\xBC", "a = \"\"\"\n\xC3\xBC\"\xC3\xBC\"\"\"",
          "a = '''\n'\xC3\xBC\\'''", "a = \"\"\"\\\"\"\"\xC3\xBC\"\"\"", "\xEF\xBB\xBFtext = 1",
          "a = \"\\\\\"\nb = \"\xC3\xBC\"", "a = \"\"\"x\\\n  y\xC3\xBC\"\"\""}) {
        EXPECT_EQ(StrayLine(text), 0) << text;
    }
}

TEST(StrayCharacters, AreFoundWithTheirLine) {
    EXPECT_EQ(StrayLine("\xC3\xBC = 1"), 1);
    EXPECT_EQ(StrayLine("a = 1\nb = \xC9\xA3\n"), 2);
    EXPECT_EQ(StrayLine("a = \"\xC3\xBC\"\n\n\xC2\xA0\n"), 3);
    EXPECT_EQ(StrayLine("a = '''\n\n''' \xC3\xBC"), 3);
    EXPECT_EQ(StrayLine("a = \"\"\"\n\"\"\"\xC3\xBC"), 2);
    EXPECT_EQ(StrayLine("a = \"\\\\\" \xC3\xBC"), 1);
    EXPECT_EQ(StrayLine("a = 'b\\' \xC3\xBC"), 1);
    EXPECT_EQ(StrayLine(" \xEF\xBB\xBF"), 1);
}

TEST(StrayCharacters, AreFoundWhereABackslashJoinsLines) {
    EXPECT_EQ(StrayLine("a = \"\"\"x\\\n  \n \xC3\xBC\"\"\""), 3);
    EXPECT_EQ(StrayLine("a = \"\"\"x\\\xC3\xBC\"\"\""), 1);
}

}  // namespace
}  // namespace embedded_test
