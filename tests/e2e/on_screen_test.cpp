#include "tests/e2e/on_screen.h"

#include <gtest/gtest.h>

namespace e2e {
namespace {

TEST(OnScreen, LeavesShortLinesAsTheyAre) {
    EXPECT_EQ(AsOnScreen("ab\n\ncd", 10), "ab\n\ncd");
}

TEST(OnScreen, BreaksWhereTheRowIsFull) {
    EXPECT_EQ(AsOnScreen("abcdefgh\n", 5), "abcde\nfgh\n");
}

TEST(OnScreen, ALineThatJustFillsItsRowNeedsNoOther) {
    EXPECT_EQ(AsOnScreen("abcde\nf\n", 5), "abcde\nf\n");
}

TEST(OnScreen, TabsAreBlanksUpToTheNextStop) {
    EXPECT_EQ(AsOnScreen("\ta\nabc\td\n12345678\t9\n", 40), "        a\nabc     d\n12345678        9\n");
    EXPECT_EQ(AsOnScreen("12345678\t9\n", 10), "12345678\n9\n");
}

TEST(OnScreen, BlanksAtTheEndOfARowAreNotSeen) {
    EXPECT_EQ(AsOnScreen("a  \n   \nabc   def\n", 5), "a\n\nabc\n def\n");
}

}  // namespace
}  // namespace e2e
