#include "krvcmd/console/text/text_line.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Ostrel::UI::Console;

TEST(TextLine, IsEmptyAfterConstruction) {
    EXPECT_EQ(TextLine().View(), "");
    EXPECT_EQ(TextLine().GetSize(), 0U);
}

TEST(TextLine, AppendsTextsCharactersAndBlanks) {
    TextLine line;
    line.Append("abc");
    line.Append('|');
    line.AppendBlanks(3);
    line.Append("");
    line.AppendBlanks(0);
    line.Append(std::string_view("d\0e", 3));
    EXPECT_EQ(line.View(), std::string_view("abc|   d\0e", 10));
    EXPECT_EQ(line.GetSize(), 10U);
}

TEST(TextLine, KeepsItsTextWhileItGrows) {
    TextLine line;
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        const std::string part(static_cast<size_t>(i % 13), static_cast<char>('a' + i % 26));
        line.Append(part);
        line.AppendBlanks(static_cast<size_t>(i % 3));
        expected += part + std::string(static_cast<size_t>(i % 3), ' ');
        ASSERT_EQ(line.View(), expected);
    }
}

TEST(TextLine, LetsTheCallerWriteOverBlanks) {
    TextLine line;
    line.Append("ab");
    std::string_view("cd").copy(line.AppendBlanks(4) + 1, 2);
    EXPECT_EQ(line.View(), "ab cd ");
}

TEST(TextLine, LetsTheCallerChangeItsCharacters) {
    TextLine line;
    line.Append("abc");
    line.Characters().back() = 'C';
    EXPECT_EQ(line.View(), "abC");
}

TEST(TextLine, IsBlankAgainWhereItWasCut) {
    TextLine line;
    line.Append("abcdef");
    line.Truncate(2);
    EXPECT_EQ(line.View(), "ab");
    line.AppendBlanks(3);
    line.Append('x');
    EXPECT_EQ(line.View(), "ab   x");
    line.Truncate(0);
    line.AppendBlanks(6);
    EXPECT_EQ(line.View(), "      ");
}

}  // namespace
