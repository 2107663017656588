#include "krvcmd/console/writer/console_streams.h"

#include <gtest/gtest.h>

#include "tests/unit/console/support/console_streams_fixture.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::RedirectedStreams;
using ConsoleStreamsTest = krvcmd::test::ConsoleStreamsFixture;

TEST_F(ConsoleStreamsTest, KeepTheOrderOfBothStreamsInOnePlace) {
    krvcmd::Status status = krvcmd::Status::SystemError(1);
    {
        const RedirectedStreams redirected(m_file, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "banner\n");
        streams.Write(Stream::StandardError, "warning\n");
        streams.Write(Stream::StandardOutput, "table\n");
        streams.Write(Stream::StandardError, "result\n");
        status = streams.Finish();
    }
    EXPECT_TRUE(status.IsOk());
    EXPECT_EQ(FileText(), "banner\nwarning\ntable\nresult\n");
}

TEST_F(ConsoleStreamsTest, FlushTheirTextOnlyWhenFinished) {
    const RedirectedStreams redirected(m_file, m_file);
    ConsoleStreams streams;
    streams.Write(Stream::StandardOutput, "text");
    EXPECT_EQ(FileText(), "");
    EXPECT_TRUE(streams.Finish().IsOk());
    EXPECT_EQ(FileText(), "text");
}

TEST_F(ConsoleStreamsTest, ReportAClosedDescriptor) {
    krvcmd::Status status;
    {
        const RedirectedStreams redirected(-1, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "lost\n");
        status = streams.Finish();
    }
    EXPECT_EQ(status.Code(), 9U);  // bad file descriptor
}

TEST_F(ConsoleStreamsTest, StartAfreshWhenFinished) {
    ConsoleStreams streams;
    krvcmd::Status first;
    {
        const RedirectedStreams redirected(-1, m_file);
        streams.Write(Stream::StandardOutput, "lost\n");
        first = streams.Finish();
    }
    krvcmd::Status second = krvcmd::Status::SystemError(1);
    {
        const RedirectedStreams redirected(m_file, m_file);
        streams.Write(Stream::StandardOutput, "kept\n");
        second = streams.Finish();
    }
    EXPECT_EQ(first.Code(), 9U);
    EXPECT_TRUE(second.IsOk());
    EXPECT_EQ(FileText(), "kept\n");
}

TEST_F(ConsoleStreamsTest, ReportNothingOfAClosedDescriptorThatIsNotUsed) {
    krvcmd::Status status = krvcmd::Status::SystemError(1);
    {
        const RedirectedStreams redirected(-1, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "");
        status = streams.Finish();
    }
    EXPECT_TRUE(status.IsOk());
}

TEST_F(ConsoleStreamsTest, ReportAnErrorOfStandardError) {
    krvcmd::Status status;
    {
        const RedirectedStreams redirected(m_file, -1);
        ConsoleStreams streams;
        streams.Write(Stream::StandardError, "lost\n");
        streams.Write(Stream::StandardOutput, "fine\n");
        status = streams.Finish();
    }
    EXPECT_EQ(status.Code(), 9U);
    EXPECT_EQ(FileText(), "fine\n");
}

}  // namespace
