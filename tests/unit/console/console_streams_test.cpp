#include "krvcmd/console/console_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "krvcmd/console/platform/broken_pipe.h"

namespace {

using namespace Ostrel::UI::Console;

// While it lives, standard output and standard error go to the given descriptors (-1: closed).
class RedirectedStreams {
  public:
    RedirectedStreams(int output, int error)
        : m_savedOutput(dup(STDOUT_FILENO)), m_savedError(dup(STDERR_FILENO)) {
        std::fflush(stdout);
        Redirect(output, STDOUT_FILENO);
        Redirect(error, STDERR_FILENO);
    }
    ~RedirectedStreams() {
        // Text that could not be written is of no use to the next test.
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        std::fflush(stdout);
        std::clearerr(stdout);
        std::clearerr(stderr);
        dup2(m_savedOutput, STDOUT_FILENO);
        dup2(m_savedError, STDERR_FILENO);
        close(m_savedOutput);
        close(m_savedError);
    }
    RedirectedStreams(const RedirectedStreams&) = delete;
    RedirectedStreams& operator=(const RedirectedStreams&) = delete;

  private:
    static void Redirect(int from, int to) {
        if (from < 0) {
            close(to);
        } else {
            dup2(from, to);
        }
    }

    int m_savedOutput;
    int m_savedError;
};

class ConsoleStreamsTest : public testing::Test {
  public:
    ConsoleStreamsTest() : m_path(testing::TempDir() + "console_streams_" + std::to_string(getpid())) {
        m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
    }
    ~ConsoleStreamsTest() override {
        close(m_file);
        unlink(m_path.c_str());
    }
    ConsoleStreamsTest(const ConsoleStreamsTest&) = delete;
    ConsoleStreamsTest& operator=(const ConsoleStreamsTest&) = delete;

  protected:
    std::string FileText() const {
        std::ostringstream text;
        text << std::ifstream(m_path).rdbuf();
        return text.str();
    }

    std::string m_path;
    int m_file = -1;
};

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

TEST_F(ConsoleStreamsTest, BringTheirTextOutWhenFinished) {
    const RedirectedStreams redirected(m_file, m_file);
    ConsoleStreams streams;
    streams.Write(Stream::StandardOutput, "text");
    EXPECT_TRUE(streams.Finish().IsOk());
    EXPECT_EQ(FileText(), "text");
}

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

TEST_F(ConsoleStreamsTest, ReportNothingOfAClosedDescriptorThatIsNotNeeded) {
    krvcmd::Status status = krvcmd::Status::SystemError(1);
    {
        const RedirectedStreams redirected(-1, m_file);
        ConsoleStreams streams;
        streams.Write(Stream::StandardOutput, "");
        status = streams.Finish();
    }
    EXPECT_TRUE(status.IsOk());
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

TEST_F(ConsoleStreamsTest, ReportNothingOfAReaderThatWentAway) {
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

TEST(BrokenPipe, IsTheErrorOfAPipeWithoutReader) {
    EXPECT_TRUE(Platform::IsBrokenPipe(EPIPE));
    EXPECT_FALSE(Platform::IsBrokenPipe(ENOSPC));
    EXPECT_FALSE(Platform::IsBrokenPipe(0));
}

}  // namespace
