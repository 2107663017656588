// Not on Windows: there is neither a device that is always full nor a pipe without a reader to be had; what
// the streams do with the errors is tested with closed descriptors there.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/writer/console_streams.h"
#include "tests/unit/console/support/console_streams_fixture.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::RedirectedStreams;
using ConsoleStreamsTest = krvcmd::test::ConsoleStreamsFixture;

TEST_F(ConsoleStreamsTest, ReportAFullDevice) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    krvcmd::Status status;
    {
        const RedirectedStreams redirected(full, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "lost\n");
        streams.Write(Stream::StandardError, "still heard\n");
        status = streams.Finish();
    }
    close(full);
    EXPECT_EQ(status.GetKind(), krvcmd::Status::Kind::SystemError);
    EXPECT_EQ(status.Code(), 28U);  // no space left on device
    EXPECT_EQ(FileText(), "still heard\n");
}

TEST_F(ConsoleStreamsTest, ReportTextTooLongForAFullDeviceAtOnce) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    krvcmd::Status status;
    {
        const RedirectedStreams redirected(full, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, std::string(1'000'000, 'x'));
        status = streams.Finish();
    }
    close(full);
    EXPECT_EQ(status.Code(), 28U);
}

TEST_F(ConsoleStreamsTest, ReportTheFirstErrorOnly) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    krvcmd::Status status;
    {
        const RedirectedStreams redirected(full, -1);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "lost\n");
        streams.Write(Stream::StandardError, "lost, too\n");
        status = streams.Finish();
    }
    close(full);
    EXPECT_EQ(status.Code(), 28U);
}

TEST_F(ConsoleStreamsTest, DropTextAfterAnError) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    {
        const RedirectedStreams redirected(full, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, std::string(100'000, 'x'));
        std::clearerr(stdout);
        // Nothing of this gets as far as the device, though it would take it now.
        dup2(m_file, STDOUT_FILENO);
        streams.Write(Stream::StandardOutput, std::string(100'000, 'y'));
        EXPECT_EQ(streams.Finish().Code(), 28U);
    }
    close(full);
    EXPECT_EQ(FileText().find('y'), std::string::npos);
}

TEST_F(ConsoleStreamsTest, ReportNothingWhenTheReaderHasGone) {
    std::array<int, 2> pipeEnds{};
    ASSERT_EQ(pipe(pipeEnds.data()), 0);
    close(pipeEnds[0]);
    Platform::SurviveBrokenPipes();
    krvcmd::Status status = krvcmd::Status::SystemError(1);
    {
        const RedirectedStreams redirected(pipeEnds[1], m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "nobody reads this\n");
        streams.Write(Stream::StandardError, "result\n");
        streams.Write(Stream::StandardOutput, std::string(100'000, 'x'));
        status = streams.Finish();
    }
    close(pipeEnds[1]);
    std::signal(SIGPIPE, SIG_DFL);
    EXPECT_TRUE(status.IsOk());
    EXPECT_EQ(FileText(), "result\n");
}

}  // namespace
