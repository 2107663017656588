#include "krvcmd/console/table/cell_text.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "tests/unit/console/support/failing_allocation.h"

namespace {

using namespace Ostrel::UI::Console;

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

TEST(CellText, TakesShortTextsForLongOnesAndBack) {
    CellText text("short");
    text.Assign("a text of more than fifteen bytes");
    EXPECT_EQ(text.View(), "a text of more than fifteen bytes");
    text.Assign("another text of more than fifteen bytes");
    EXPECT_EQ(text.View(), "another text of more than fifteen bytes");
    text.Assign("exactly 15 byte");
    EXPECT_EQ(text.View(), "exactly 15 byte");
    text.Assign("");
    EXPECT_EQ(text.View(), "");
}

TEST(CellText, KeepsItsTextWhenThereIsNoMemoryForANewOne) {
    CellText text("the text that was there before");
    const krvcmd::test::FailingAllocation failure(1);
    EXPECT_THROW(text.Assign("a new text that needs memory of its own"), std::bad_alloc);
    EXPECT_EQ(text.View(), "the text that was there before");
}

}  // namespace
