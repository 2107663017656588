#include <gtest/gtest.h>

#include "krvcmd/frontend/platform/process.h"

namespace krvcmd {
namespace {

TEST(ExitStatus, IsTheWholeCode) {
    EXPECT_EQ(ExitStatus(0), 0);
    EXPECT_EQ(ExitStatus(22), 22);
    EXPECT_EQ(ExitStatus(256), 256);
    EXPECT_EQ(ExitStatus(501), 501);
    EXPECT_EQ(ExitStatus(0x7FFFFFFF), 0x7FFFFFFF);
    EXPECT_EQ(ExitStatus(0xFFFFFFFF), -1);
}

}  // namespace
}  // namespace krvcmd
