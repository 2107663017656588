#include "krvcmd/frontend/base/status.h"

#include <gtest/gtest.h>

#include <string_view>
#include <type_traits>

namespace krvcmd {
namespace {

// Copied freely, and moved without failing.
static_assert(std::is_copy_constructible_v<Status> && std::is_copy_assignable_v<Status>);
static_assert(std::is_nothrow_move_constructible_v<Status> && std::is_nothrow_move_assignable_v<Status>);
// A number alone does not tell the kind of an error.
static_assert(!std::is_constructible_v<Status, int> && !std::is_convertible_v<Status, bool>);

TEST(Status, CarriesKindCodeAndTextAsTheInterfaceNumbersThem) {
    struct Row {
        Status status;
        uint32_t kind;
        uint32_t code;
        std::string_view message;
    };
    const Row rows[] = {
        {Status(), 0, 0, ""},
        {Status::SystemError(0), 0, 0, ""},
        {Status::SystemError(22), 1, 22, ""},
        {Status::ServiceError(501, "The slot is empty."), 3, 501, "The slot is empty."},
        {Status::ServiceError(0, ""), 3, 0, ""},  // an error although its code is 0
    };
    for (const Row& row : rows) {
        EXPECT_EQ(static_cast<uint32_t>(row.status.GetKind()), row.kind);
        EXPECT_EQ(row.status.IsOk(), row.kind == 0);
        EXPECT_EQ(row.status.IsServiceError(), row.kind == 3);
        EXPECT_EQ(row.status.Code(), row.code);
        EXPECT_EQ(row.status.Message(), row.message);
    }
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
