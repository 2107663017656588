#include "krvcmd/frontend/base/status.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace krvcmd {
namespace {

// It travels by value, and a move leaves nothing to fail.
static_assert(std::is_copy_constructible_v<Status> && std::is_copy_assignable_v<Status>);
static_assert(std::is_nothrow_move_constructible_v<Status> && std::is_nothrow_move_assignable_v<Status>);
// A number alone does not say of which kind an error is.
static_assert(!std::is_constructible_v<Status, int> && !std::is_convertible_v<Status, bool>);

TEST(Status, IsSuccessByDefault) {
    const Status status;
    EXPECT_TRUE(status.IsOk());
    EXPECT_FALSE(status.IsServiceError());
    EXPECT_EQ(status.GetKind(), Status::Kind::Success);
    EXPECT_EQ(status.Code(), 0U);
    EXPECT_EQ(status.Message(), "");
}

TEST(Status, IsSuccessForTheSystemErrorZero) {
    const Status status = Status::SystemError(0);
    EXPECT_TRUE(status.IsOk());
    EXPECT_EQ(status.GetKind(), Status::Kind::Success);
    EXPECT_EQ(status.Code(), 0U);
}

TEST(Status, CarriesTheNumberOfASystemErrorAndNoText) {
    const Status status = Status::SystemError(22);
    EXPECT_FALSE(status.IsOk());
    EXPECT_FALSE(status.IsServiceError());
    EXPECT_EQ(status.GetKind(), Status::Kind::SystemError);
    EXPECT_EQ(status.Code(), 22U);
    EXPECT_EQ(status.Message(), "");
}

TEST(Status, CarriesCodeAndTextOfAServiceError) {
    const Status status = Status::ServiceError(501, "The slot is empty.");
    EXPECT_FALSE(status.IsOk());
    EXPECT_TRUE(status.IsServiceError());
    EXPECT_EQ(status.GetKind(), Status::Kind::ServiceError);
    EXPECT_EQ(status.Code(), 501U);
    EXPECT_EQ(status.Message(), "The slot is empty.");
}

TEST(Status, IsAnErrorEvenWhenTheServiceErrorHasCodeZero) {
    const Status status = Status::ServiceError(0, "");
    EXPECT_FALSE(status.IsOk());
    EXPECT_TRUE(status.IsServiceError());
    EXPECT_EQ(status.Code(), 0U);
}

TEST(Status, NumbersItsKindsAsTheInterfaceDoes) {
    EXPECT_EQ(static_cast<uint32_t>(Status::Kind::Success), 0U);
    EXPECT_EQ(static_cast<uint32_t>(Status::Kind::SystemError), 1U);
    EXPECT_EQ(static_cast<uint32_t>(Status::Kind::ServiceError), 3U);
}

TEST(Status, TakesTheFirstOfTwoErrors) {
    const Status success;
    const Status first = Status::SystemError(6);
    const Status second = Status::ServiceError(7, "x");
    EXPECT_EQ(FirstError(first, second).Code(), 6U);
    EXPECT_EQ(FirstError(success, second).Code(), 7U);
    EXPECT_EQ(FirstError(first, success).Code(), 6U);
    EXPECT_TRUE(FirstError(success, success).IsOk());
    // A service error with code 0 is an error too.
    EXPECT_TRUE(FirstError(Status::ServiceError(0, ""), first).IsServiceError());
}

}  // namespace
}  // namespace krvcmd
