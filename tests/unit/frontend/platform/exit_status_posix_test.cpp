// Not on Windows: the whole number is the exit status; exit_status_windows_test.cpp holds it.
#include <gtest/gtest.h>

#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {
namespace {

TEST(ExitStatus, IsTheCodeWhenItFitsInto8Bits) {
    EXPECT_EQ(ExitStatus(0), 0);
    EXPECT_EQ(ExitStatus(2), 2);
    EXPECT_EQ(ExitStatus(22), 22);
    EXPECT_EQ(ExitStatus(255), 255);
}

TEST(ExitStatus, IsTheLow8BitsOfALargerCode) {
    EXPECT_EQ(ExitStatus(257), 1);
    EXPECT_EQ(ExitStatus(500), 244);  // 500 - 256
    EXPECT_EQ(ExitStatus(501), 245);
    EXPECT_EQ(ExitStatus(0xFFFFFFFF), 255);
    EXPECT_EQ(ExitStatus(0x7FFFFFFF), 255);
}

TEST(ExitStatus, NeverLetsAnErrorLookLikeSuccess) {
    EXPECT_EQ(ExitStatus(256), 255);
    EXPECT_EQ(ExitStatus(512), 255);
    EXPECT_EQ(ExitStatus(0x80000000), 255);
    EXPECT_EQ(ExitStatus(0xFFFFFF00), 255);
}

}  // namespace
}  // namespace krvcmd
