#pragma once

#include <gtest/gtest.h>

#include <string>

#include "embedded/attached/base/result.h"
#include "tests/unit/attached/hex.h"

namespace embedded::attached {

// The text of an answer that must be refused.
template <typename Value>
std::string Refusal(const Result<Value>& result) {
    if (result) return "accepted";
    EXPECT_EQ(result.GetError().kind, ErrorKind::BadAnswer);
    return result.GetError().text;
}

}  // namespace embedded::attached
