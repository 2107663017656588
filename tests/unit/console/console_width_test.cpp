#include <gtest/gtest.h>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/query/query_table.h"
#include "tests/support/captured_output.h"

namespace {

using krvcmd::test::OutputOf;
using Ostrel::UI::Console::CKrvQueryTable;

TEST(ConsoleWidth, Is32767WhenStandardOutputIsRedirected) {
    OutputOf([] { EXPECT_EQ(CKrvQueryTable().GetMaxWidth(), 32767U); });
}

TEST(ConsoleWidth, OfAScreenBufferIsZeroWhenStandardOutputIsRedirected) {
    OutputOf([] { EXPECT_EQ(Ostrel::UI::Console::Platform::ScreenBufferWidth(), 0); });
}

}  // namespace
