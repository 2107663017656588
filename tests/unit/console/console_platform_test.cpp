#include "krvcmd/console/platform/console_platform.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "krvcmd/console/query/query_table.h"
#include "tests/support/captured_output.h"
#include "tests/unit/console/support/console_streams_fixture.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::OutputOf;
using krvcmd::test::RedirectedStreams;

TEST(ConsoleWidth, Is32767WhenStandardOutputIsRedirected) {
    OutputOf([] {
        EXPECT_EQ(Platform::ScreenBufferWidth(), 0);
        EXPECT_EQ(CKrvQueryTable().GetMaxWidth(), 32767U);
    });
}

TEST(BrokenPipe, IsTheErrorOfAPipeWithoutReader) {
    std::array<int, 2> ends{};
#ifdef _WIN32
    ASSERT_EQ(_pipe(ends.data(), 4096, _O_BINARY), 0);
#else
    ASSERT_EQ(pipe(ends.data()), 0);
#endif
    {
        const RedirectedStreams redirected(ends[1], -1);
        EXPECT_TRUE(Platform::IsBrokenPipe(Stream::StandardOutput, EPIPE));
        EXPECT_FALSE(Platform::IsBrokenPipe(Stream::StandardOutput, ENOSPC));
        EXPECT_FALSE(Platform::IsBrokenPipe(Stream::StandardOutput, 0));
    }
    close(ends[0]);
    close(ends[1]);
}

TEST(WriteError, IsNeverZero) {
    EXPECT_NE(Platform::WriteError(0), 0);
    EXPECT_EQ(Platform::WriteError(ENOSPC), ENOSPC);
    EXPECT_EQ(Platform::WriteError(EBADF), EBADF);
}

}  // namespace
