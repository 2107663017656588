#include "krvcmd/console/table/table_item.h"

#include <gtest/gtest.h>

namespace {

using namespace Ostrel::UI::Console;

std::string Rendered(std::string_view text, uint32_t width) {
    return CTableDirItem(14, text).Render(width);
}

TEST(TableDirItem, IsAlignedToTheLeftWhenItFits) {
    EXPECT_EQ(Rendered("C:\\a", 6), "C:\\a  ");
    EXPECT_EQ(Rendered("C:\\a", 4), "C:\\a");
    EXPECT_EQ(Rendered("C:\\archive\\2001", 0), "C:\\archive\\2001");
}

TEST(TableDirItem, KeepsItsEndWithoutABackslash) {
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 6), "...HIJ");
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 3), "HIJ");
    EXPECT_EQ(Rendered("ABCDEFGHIJ", 1), "J");
    EXPECT_EQ(Rendered("AB", 1), "B");
}

TEST(TableDirItem, KeepsItsEndWithOneBackslash) {
    EXPECT_EQ(Rendered("archive\\2001", 8), "...\\2001");
    EXPECT_EQ(Rendered("\\abcdefghi", 5), "...hi");
}

TEST(TableDirItem, KeepsItsEndWithSeveralBackslashes) {
    // 15 characters, the middle part "archive" of 7 is longer than 3, but 15 is not smaller than 7 + 3.
    EXPECT_EQ(Rendered("C:\\archive\\2001", 10), "...ve\\2001");
    EXPECT_EQ(Rendered("C:\\archive\\2001", 3), "001");
    // A character in front of the first or behind the last backslash is enough.
    EXPECT_EQ(Rendered("\\archive\\x", 8), "...ive\\x");
    EXPECT_EQ(Rendered("x\\archive\\", 8), "...hive\\");
}

TEST(TableDirItem, ElidesTheMiddleBetweenABackslashAtEitherEnd) {
    // 9 characters are fewer than the middle's 7 and 3. The result is not filled or cut to the width.
    EXPECT_EQ(Rendered("\\archive\\", 8), "\\...\\");
    EXPECT_EQ(Rendered("\\archive\\", 2), "\\...\\");
    EXPECT_EQ(Rendered("\\ab\\cdef\\", 8), "\\...\\");
    // A middle of 4 is elided, one of 3 is not.
    EXPECT_EQ(Rendered("\\abcd\\", 5), "\\...\\");
    EXPECT_EQ(Rendered("\\abc\\", 4), "...\\");
}

TEST(TableDirItem, KeepsItsBeginningWhenTwoBackslashesFollowEachOther) {
    // The position behind the first backslash is that of the last one.
    EXPECT_EQ(Rendered("\\\\server", 6), "...erv");
    EXPECT_EQ(Rendered("\\\\server", 4), "...e");
    EXPECT_EQ(Rendered("\\\\server", 3), "\\\\s");
    EXPECT_EQ(Rendered("\\\\server", 1), "\\");
    EXPECT_EQ(Rendered("ab\\\\cdefgh", 7), "...\\cde");
}

TEST(TableDirItem, ComparesAsAText) {
    EXPECT_EQ(CTableDirItem(14, "dir-9").Compare(CTableDirItem(14, "dir-10")), -1);
    EXPECT_EQ(CTableDirItem(14, "x").GetValue(), 0);
}

}  // namespace
