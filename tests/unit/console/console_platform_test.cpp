#include "krvcmd/console/platform/console_platform.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "krvcmd/console/query/query_table.h"
#include "tests/support/captured_output.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::OutputOf;

TEST(ConsoleWidth, Is32767WhenStandardOutputIsRedirected) {
    OutputOf([] {
        EXPECT_EQ(Platform::ScreenBufferWidth(), 0);
        EXPECT_EQ(CKrvQueryTable().GetMaxWidth(), 32767U);
    });
}

TEST(BrokenPipe, IsTheErrorOfAPipeWithoutReader) {
    EXPECT_TRUE(Platform::IsBrokenPipe(EPIPE));
    EXPECT_FALSE(Platform::IsBrokenPipe(ENOSPC));
    EXPECT_FALSE(Platform::IsBrokenPipe(0));
}

}  // namespace
