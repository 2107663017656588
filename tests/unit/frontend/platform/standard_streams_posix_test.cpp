// Not on Windows: standard streams have no numbers there that another file could get.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {
namespace {

constexpr int kAllIsWell = 0;
constexpr int kTookTheNumber = 1;
constexpr int kUsable = 2;

bool FailsAsIfClosed(int descriptor) {
    char byte = 0;
    const ssize_t size =
        descriptor == STDIN_FILENO ? read(descriptor, &byte, 1) : write(descriptor, &byte, 1);
    return size == -1 && errno == EBADF;
}

// What becomes of a standard stream that the program is started without, once a library opens a file.
[[noreturn]] void RunWithout(int descriptor) {
    close(descriptor);
    PrepareStandardStreams();
    const int opened = open("/dev/null", O_RDWR);
    if (opened <= STDERR_FILENO) _exit(kTookTheNumber);
    _exit(FailsAsIfClosed(descriptor) ? kAllIsWell : kUsable);
}

TEST(StandardStreams, KeepTheirNumbersAndGoOnFailingWhenTheyAreClosed) {
    EXPECT_EXIT(RunWithout(STDIN_FILENO), testing::ExitedWithCode(kAllIsWell), "");
    EXPECT_EXIT(RunWithout(STDOUT_FILENO), testing::ExitedWithCode(kAllIsWell), "");
    EXPECT_EXIT(RunWithout(STDERR_FILENO), testing::ExitedWithCode(kAllIsWell), "");
}

TEST(StandardStreams, StayWhatTheyAreWhenTheyAreOpen) {
    const int before = open("/dev/null", O_RDONLY);
    close(before);
    PrepareStandardStreams();
    const int after = open("/dev/null", O_RDONLY);
    close(after);
    EXPECT_EQ(after, before) << "nothing was opened";
}

}  // namespace
}  // namespace krvcmd
