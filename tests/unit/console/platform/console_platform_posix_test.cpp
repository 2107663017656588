// Not on Windows: no Windows process creates a console of a given width for itself; the end-to-end tests give
// it one.
#include <gtest/gtest.h>

#include "krvcmd/console/query/query_table.h"
#include "tests/unit/console/support/pseudo_terminal.h"

namespace {

using krvcmd::test::PseudoTerminal;
using Ostrel::UI::Console::CKrvQueryTable;

// The line width of a table that is constructed on a terminal of that many columns.
uint32_t WidthOnTerminal(uint16_t columns) {
    const PseudoTerminal terminal(columns);
    EXPECT_TRUE(terminal.IsReady());
    return CKrvQueryTable().GetMaxWidth();
}

TEST(ConsoleWidth, LeavesTheLastColumnOfTheTerminalFree) {
    EXPECT_EQ(WidthOnTerminal(80), 79U);
    EXPECT_EQ(WidthOnTerminal(20), 19U);
    EXPECT_EQ(WidthOnTerminal(132), 131U);
    EXPECT_EQ(WidthOnTerminal(2), 1U);
    EXPECT_EQ(WidthOnTerminal(32767), 32766U);
}

TEST(ConsoleWidth, Is32767WhenTheTerminalHasNoUsableWidth) {
    EXPECT_EQ(WidthOnTerminal(0), 32767U);
    EXPECT_EQ(WidthOnTerminal(1), 32767U);
    // Not a signed 16-bit number.
    EXPECT_EQ(WidthOnTerminal(32768), 32767U);
}

}  // namespace
