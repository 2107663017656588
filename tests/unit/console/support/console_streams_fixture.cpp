#include "tests/unit/console/support/console_streams_fixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

namespace krvcmd::test {
namespace {

#ifdef O_CLOEXEC
constexpr int kNotInherited = O_CLOEXEC;
#else
constexpr int kNotInherited = O_NOINHERIT;
#endif

#ifdef _WIN32
constexpr const char* kNowhere = "NUL";
#else
constexpr const char* kNowhere = "/dev/null";
#endif

void Redirect(int from, int to) {
    if (from < 0) {
        close(to);
    } else {
        dup2(from, to);
    }
}

}  // namespace

RedirectedStreams::RedirectedStreams(int output, int error)
    : m_savedOutput(dup(STDOUT_FILENO)), m_savedError(dup(STDERR_FILENO)) {
    std::fflush(stdout);
    Redirect(output, STDOUT_FILENO);
    Redirect(error, STDERR_FILENO);
}

RedirectedStreams::~RedirectedStreams() {
    // Text that could not be written is of no use to the next test.
    dup2(open(kNowhere, O_WRONLY | kNotInherited), STDOUT_FILENO);
    std::fflush(stdout);
    std::clearerr(stdout);
    std::clearerr(stderr);
    dup2(m_savedOutput, STDOUT_FILENO);
    dup2(m_savedError, STDERR_FILENO);
    close(m_savedOutput);
    close(m_savedError);
}

ConsoleStreamsFixture::ConsoleStreamsFixture()
    : m_path(testing::TempDir() + "console_streams_" + std::to_string(getpid())) {
    m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND | kNotInherited, 0600);
}

ConsoleStreamsFixture::~ConsoleStreamsFixture() {
    close(m_file);
    unlink(m_path.c_str());
}

std::string ConsoleStreamsFixture::FileText() const {
    std::ostringstream text;
    text << std::ifstream(m_path).rdbuf();
    return text.str();
}

}  // namespace krvcmd::test
