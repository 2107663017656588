#include "krvcmd/frontend/base/memory_guard.h"

#include <gtest/gtest.h>

#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

TEST(GuardMemory, HandsTheResultOnUnchanged) {
    EXPECT_EQ(test::Text(GuardMemory([] { return Status(); })), "OK");
    EXPECT_EQ(test::Text(GuardMemory([] { return Status::SystemError(6); })), "error 6");
    EXPECT_EQ(test::Text(GuardMemory([] { return Status::ServiceError(501, "x"); })), "service error 501: x");
}

TEST(GuardMemory, TurnsMissingMemoryIntoSystemError12) {
    EXPECT_EQ(test::Text(GuardMemory([]() -> Status { throw std::bad_alloc(); })), "error 12");
    EXPECT_EQ(test::Text(GuardMemory([]() -> Status { throw std::bad_array_new_length(); })), "error 12");
}

TEST(GuardMemory, TakesASizeThatNoMemoryHoldsAsMissingMemory) {
    EXPECT_EQ(test::Text(GuardMemory([]() -> Status { throw std::length_error("too long"); })), "error 12");
}

}  // namespace
}  // namespace krvcmd
