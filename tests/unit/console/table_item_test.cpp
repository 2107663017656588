#include "krvcmd/console/table/table_item.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>

#include "tests/unit/console/support/failing_allocation.h"
#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Rendered;

TEST(CellText, IsEmptyAfterConstruction) {
    EXPECT_EQ(CellText().View(), "");
}

TEST(CellText, HoldsTextsOfEveryLength) {
    for (size_t length = 0; length <= 300; ++length) {
        const std::string text(length, static_cast<char>('a' + length % 26));
        EXPECT_EQ(CellText(text).View(), text);
    }
}

TEST(CellText, HoldsBytesOfEveryValue) {
    const std::string text("\xff\x80\0\x7f", 4);
    EXPECT_EQ(CellText(text).View(), text);
}

TEST(CellText, ReplacesShortTextsByLongOnesAndBack) {
    CellText text("short");
    text.Assign("a text of more than 23 bytes, on the heap");
    EXPECT_EQ(text.View(), "a text of more than 23 bytes, on the heap");
    text.Assign("another text of more than 23 bytes, on the heap");
    EXPECT_EQ(text.View(), "another text of more than 23 bytes, on the heap");
    text.Assign("exactly 23 bytes, inline");
    EXPECT_EQ(text.View(), "exactly 23 bytes, inline");
    text.Assign("");
    EXPECT_EQ(text.View(), "");
}

TEST(CellText, KeepsItsTextWhenThereIsNoMemoryForANewOne) {
    CellText text("the text that was there before");
    const krvcmd::test::FailingAllocation failure(1);
    EXPECT_THROW(text.Assign("a new text that needs memory of its own"), std::bad_alloc);
    EXPECT_EQ(text.View(), "the text that was there before");
}

CTableIntItem Plain(int64_t value) {
    return {1, value, /*withUnit=*/false};
}

CTableIntItem Capacity(int64_t bytes) {
    return {1, bytes, /*withUnit=*/true};
}

TEST(TableIntItem, ShowsItsValueInDecimal) {
    EXPECT_EQ(Rendered(Plain(0), 0), "0");
    EXPECT_EQ(Rendered(Plain(-17), 0), "-17");
    EXPECT_EQ(Rendered(Plain(std::numeric_limits<int64_t>::max()), 0), "9223372036854775807");
    EXPECT_EQ(Rendered(Plain(std::numeric_limits<int64_t>::min()), 0), "-9223372036854775808");
}

TEST(TableIntItem, AlignsToTheRight) {
    EXPECT_EQ(Rendered(Plain(123), 5), "  123");
    EXPECT_EQ(Rendered(Plain(123), 4), " 123");
    EXPECT_EQ(Rendered(Plain(123), 3), "123");
}

TEST(TableIntItem, ShowsFullStopsWhenItDoesNotFit) {
    EXPECT_EQ(Rendered(Plain(123), 1), ".");
    EXPECT_EQ(Rendered(Plain(123), 2), "..");
    EXPECT_EQ(Rendered(Plain(123456), 3), "...");
    // Not filled up to the width.
    EXPECT_EQ(Rendered(Plain(123456), 4), "...");
    EXPECT_EQ(Rendered(Plain(123456), 5), "...");
    EXPECT_EQ(Rendered(Plain(123456), 6), "123456");
}

TEST(TableIntItem, FollowsAnotherAlignment) {
    CTableIntItem item = Plain(123);
    item.SetAlignment(Alignment::Centre);
    EXPECT_EQ(Rendered(item, 6), " 123  ");
    item.SetAlignment(Alignment::Left);
    EXPECT_EQ(Rendered(item, 6), "123   ");
}

TEST(TableIntItem, ShowsCapacitiesInWholeMByteUnlessAskedForMore) {
    CTableIntItem item = Capacity(1'572'864);  // 1.5 MByte
    EXPECT_EQ(Rendered(item, 0), "2 MByte");
    item.FormatValue(/*precise=*/true);
    EXPECT_EQ(Rendered(item, 0), "1.50 MByte");
    item.SetValue(681'574'400);
    EXPECT_EQ(Rendered(item, 0), "650 MByte");
}

TEST(TableIntItem, KeepsPlainNumbersPlainInEveryPrecision) {
    CTableIntItem item = Plain(1'572'864);
    item.FormatValue(/*precise=*/true);
    EXPECT_EQ(Rendered(item, 0), "1572864");
}

TEST(TableIntItem, TakesANewValue) {
    CTableIntItem item = Plain(5);
    item.SetValue(-6);
    EXPECT_EQ(item.GetValue(), -6);
    EXPECT_EQ(Rendered(item, 0), "-6");
}

TEST(TableIntItem, ComparesSignedNumbers) {
    EXPECT_EQ(Plain(2).Compare(Plain(10)), -1);
    EXPECT_EQ(Plain(10).Compare(Plain(2)), 1);
    EXPECT_EQ(Plain(7).Compare(Plain(7)), 0);
    EXPECT_EQ(Plain(-1).Compare(Plain(0)), -1);
    EXPECT_EQ(Plain(std::numeric_limits<int64_t>::min()).Compare(Plain(std::numeric_limits<int64_t>::max())),
              -1);
}

TEST(TableIntItem, ComparesCapacitiesByValueAndNotByText) {
    const CTableIntItem gigaByte = Capacity(4'700'000'000);
    const CTableIntItem megaByte = Capacity(681'574'400);
    EXPECT_EQ(gigaByte.Compare(megaByte), 1);
}

TEST(TableIntItem, ComparesWithATextAsWithZero) {
    const CTableStringItem text(1, "99");
    EXPECT_EQ(Plain(1).Compare(text), 1);
    EXPECT_EQ(Plain(0).Compare(text), 0);
    EXPECT_EQ(Plain(-1).Compare(text), -1);
}

TEST(TableOneBasedIntItem, ShowsAndHoldsTheNumberThatUsersKnow) {
    const CTableOneBasedIntItem first(6, 0);
    EXPECT_EQ(Rendered(first, 0), "1");
    EXPECT_EQ(first.GetValue(), 1);
    EXPECT_EQ(Rendered(CTableOneBasedIntItem(6, -1), 0), "0");
    EXPECT_EQ(Rendered(CTableOneBasedIntItem(6, std::numeric_limits<int32_t>::max()), 0), "2147483648");
}

TEST(TableOneBasedIntItem, TakesANewValueAsItIs) {
    CTableOneBasedIntItem item(6, 0);
    item.SetValue(12);
    EXPECT_EQ(Rendered(item, 0), "12");
}

TEST(TableOneBasedIntItem, IsRenderedAndComparedAsANumber) {
    EXPECT_EQ(Rendered(CTableOneBasedIntItem(6, 11), 4), "  12");
    EXPECT_EQ(Rendered(CTableOneBasedIntItem(6, 999), 3), "...");
    EXPECT_EQ(CTableOneBasedIntItem(6, 8).Compare(CTableOneBasedIntItem(6, 9)), -1);
    EXPECT_EQ(CTableOneBasedIntItem(6, 9).Compare(Plain(10)), 0);
}

TEST(TablePercentIntItem, ShowsTheUsedShareWithADoubledPercentSign) {
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 25, 100), 0), "75%%");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 0, 7), 0), "100%%");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 1, 3), 0), "66%%");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 150, 100), 0), "-50%%");
}

TEST(TablePercentIntItem, ShowsZeroWithoutATotal) {
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 5, 0), 0), "0%%");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 5, -5), 0), "0%%");
}

TEST(TablePercentIntItem, IsRenderedOnePositionWiderThanTheColumn) {
    // Six positions for a column of five: one of the two percent signs does not show.
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 25, 100), 5), "  75%%");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 25, 100), 3), "75%%");
}

TEST(TablePercentIntItem, ShowsFullStopsWhenItDoesNotFit) {
    // A column of 2 renders into 3, of 1 into 2.
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 25, 100), 2), "...");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 25, 100), 1), "..");
    EXPECT_EQ(Rendered(CTablePercentIntItem(12, 0, 100), 3), "...");
}

TEST(TablePercentIntItem, ComparesByItsShare) {
    const CTablePercentIntItem nine(12, 91, 100);
    const CTablePercentIntItem ten(12, 180, 200);
    EXPECT_EQ(nine.GetValue(), 9);
    EXPECT_EQ(nine.Compare(ten), -1);
    EXPECT_EQ(ten.Compare(CTablePercentIntItem(12, 90, 100)), 0);
}

std::string RenderedText(std::string_view text, uint32_t width) {
    return Rendered(CTableStringItem(15, text), width);
}

int32_t Compared(std::string_view left, std::string_view right) {
    return CTableStringItem(15, left).Compare(CTableStringItem(15, right));
}

TEST(TableStringItem, AlignsToTheLeft) {
    EXPECT_EQ(RenderedText("abc", 6), "abc   ");
    EXPECT_EQ(RenderedText("abc", 3), "abc");
    EXPECT_EQ(RenderedText("", 2), "  ");
}

TEST(TableStringItem, ShowsItsFullTextInWidthZero) {
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 0), "ABCDEFGHIJ");
}

TEST(TableStringItem, KeepsItsEndWhenItDoesNotFit) {
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 9), "...EFGHIJ");
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 6), "...HIJ");
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 4), "...J");
}

TEST(TableStringItem, HasNoRoomForFullStopsInThreePositions) {
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 3), "HIJ");
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 2), "IJ");
    EXPECT_EQ(RenderedText("ABCDEFGHIJ", 1), "J");
}

TEST(TableStringItem, FollowsAnotherAlignment) {
    CTableStringItem item(15, "abc");
    item.SetAlignment(Alignment::Centre);
    EXPECT_EQ(Rendered(item, 6), " abc  ");
    EXPECT_EQ(Rendered(item, 7), "  abc  ");
    item.SetAlignment(Alignment::Right);
    EXPECT_EQ(Rendered(item, 6), "   abc");
}

TEST(TableStringItem, TakesANewText) {
    CTableStringItem item(15, "abc");
    item.SetText("another text");
    EXPECT_EQ(Rendered(item, 0), "another text");
    EXPECT_EQ(item.GetValue(), 0);
}

TEST(TableStringItem, ComparesNumbersAfterASeparatorByValue) {
    EXPECT_EQ(Compared("vol-2", "vol-10"), -1);
    EXPECT_EQ(Compared("vol-10", "vol-2"), 1);
    EXPECT_EQ(Compared("vol-2", "vol-02"), 0);
    // A text without a number is one with the number 0.
    EXPECT_EQ(Compared("vol", "vol-1"), -1);
    EXPECT_EQ(Compared("vol", "vol-0"), 0);
    // The prefix decides first, whatever the numbers are.
    EXPECT_EQ(Compared("alpha-10", "beta-2"), -1);
    EXPECT_EQ(Compared("beta-2", "alpha-10"), 1);
    // The separators are dropped.
    EXPECT_EQ(Compared("vol-2", "vol.2"), 0);
}

TEST(TableStringItem, ComparesOtherTextsByteByByte) {
    EXPECT_EQ(Compared("vol2", "vol10"), 1);
    EXPECT_EQ(Compared("vol10", "vol2"), -1);
    EXPECT_EQ(Compared("abc", "abc"), 0);
    EXPECT_EQ(Compared("ab", "abc"), -1);
    EXPECT_EQ(Compared("B", "a"), -1);
    // Bytes are unsigned.
    EXPECT_EQ(Compared("\xe4", "z"), 1);
    EXPECT_EQ(Compared("9", "10"), 1);
}

TEST(TableStringItem, ComparesEverythingByteByByteWhenNotNatural) {
    CTableStringItem two(15, "vol-2");
    two.SetNaturalCompare(false);
    EXPECT_EQ(two.Compare(CTableStringItem(15, "vol-10")), 1);
    EXPECT_EQ(two.Compare(CTableStringItem(15, "vol-2")), 0);
    EXPECT_EQ(two.Compare(CTableStringItem(15, "vol-20000")), -1);
}

TEST(TableStringItem, ComparesWithTheTextOfANumber) {
    EXPECT_EQ(CTableStringItem(1, "9").Compare(Plain(10)), 1);
    EXPECT_EQ(CTableStringItem(1, "10").Compare(Plain(10)), 0);
}

std::string RenderedPath(std::string_view path, uint32_t width) {
    return Rendered(CTableDirItem(14, path), width);
}

TEST(TableDirItem, IsAlignedToTheLeftWhenItFits) {
    EXPECT_EQ(RenderedPath("C:\\a", 6), "C:\\a  ");
    EXPECT_EQ(RenderedPath("C:\\a", 4), "C:\\a");
    EXPECT_EQ(RenderedPath("C:\\archive\\2001", 0), "C:\\archive\\2001");
}

TEST(TableDirItem, KeepsItsEndWithoutABackslash) {
    EXPECT_EQ(RenderedPath("ABCDEFGHIJ", 6), "...HIJ");
    EXPECT_EQ(RenderedPath("ABCDEFGHIJ", 3), "HIJ");
    EXPECT_EQ(RenderedPath("ABCDEFGHIJ", 1), "J");
    EXPECT_EQ(RenderedPath("AB", 1), "B");
}

TEST(TableDirItem, KeepsItsEndWithOneBackslash) {
    EXPECT_EQ(RenderedPath("archive\\2001", 8), "...\\2001");
    EXPECT_EQ(RenderedPath("\\abcdefghi", 5), "...hi");
}

TEST(TableDirItem, KeepsItsEndWithSeveralBackslashes) {
    // 15 characters, the middle part "archive" of 7 is longer than 3, but 15 is not smaller than 7 + 3.
    EXPECT_EQ(RenderedPath("C:\\archive\\2001", 10), "...ve\\2001");
    EXPECT_EQ(RenderedPath("C:\\archive\\2001", 3), "001");
    // One character before the first or after the last backslash is enough.
    EXPECT_EQ(RenderedPath("\\archive\\x", 8), "...ive\\x");
    EXPECT_EQ(RenderedPath("x\\archive\\", 8), "...hive\\");
}

TEST(TableDirItem, ElidesTheMiddleBetweenABackslashAtEitherEnd) {
    // 9 characters are fewer than the middle's 7 and 3. The result is not filled or cut to the width.
    EXPECT_EQ(RenderedPath("\\archive\\", 8), "\\...\\");
    EXPECT_EQ(RenderedPath("\\archive\\", 2), "\\...\\");
    EXPECT_EQ(RenderedPath("\\ab\\cdef\\", 8), "\\...\\");
    // A middle of 4 is elided, one of 3 is not.
    EXPECT_EQ(RenderedPath("\\abcd\\", 5), "\\...\\");
    EXPECT_EQ(RenderedPath("\\abc\\", 4), "...\\");
}

TEST(TableDirItem, KeepsItsBeginningWhenTwoBackslashesFollowEachOther) {
    // The position after the first backslash is that of the last one.
    EXPECT_EQ(RenderedPath("\\\\server", 6), "...erv");
    EXPECT_EQ(RenderedPath("\\\\server", 4), "...e");
    EXPECT_EQ(RenderedPath("\\\\server", 3), "\\\\s");
    EXPECT_EQ(RenderedPath("\\\\server", 1), "\\");
    EXPECT_EQ(RenderedPath("ab\\\\cdefgh", 7), "...\\cde");
}

TEST(TableDirItem, ComparesAsAText) {
    EXPECT_EQ(CTableDirItem(14, "dir-9").Compare(CTableDirItem(14, "dir-10")), -1);
    EXPECT_EQ(CTableDirItem(14, "x").GetValue(), 0);
}

}  // namespace
