#include <windows.h>

#include <gtest/gtest.h>
#include <io.h>

#include <array>
#include <cerrno>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/writer/console_streams.h"
#include "tests/unit/console/support/console_streams_fixture.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::RedirectedStreams;
using ConsoleStreamsTest = krvcmd::test::ConsoleStreamsFixture;

TEST_F(ConsoleStreamsTest, ReportAnErrorOfAFileThatAClosedPipeHas) {
    const RedirectedStreams redirected(m_file, m_file);
    for (const int error : {EPIPE, EINVAL, 0}) {
        EXPECT_FALSE(Platform::IsBrokenPipe(Stream::StandardOutput, error)) << error;
        EXPECT_EQ(Platform::WriteError(error), ENOSPC) << error;
    }
}

TEST_F(ConsoleStreamsTest, ReportNothingWhenTheReaderHasGone) {
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    ASSERT_NE(CreatePipe(&reading, &writing, nullptr, 0), 0);
    const int pipe = _open_osfhandle(reinterpret_cast<intptr_t>(writing), 0);
    ASSERT_GE(pipe, 0);
    CloseHandle(reading);
    krvcmd::Status status = krvcmd::Status::SystemError(1);
    {
        const RedirectedStreams redirected(pipe, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "nobody reads this\n");
        streams.Write(Stream::StandardError, "result\n");
        status = streams.Finish();
    }
    _close(pipe);
    EXPECT_TRUE(status.IsOk());
    EXPECT_EQ(FileText(), "result\n");
}

}  // namespace
