#include "embedded/model/random.h"

#include <gtest/gtest.h>

namespace embedded_test {
namespace {

using embedded::Random;

// Published results of SplitMix64.
TEST(RandomNumbers, AreThoseOfSplitMix64) {
    Random zero(0);
    EXPECT_EQ(zero.Next(), 0xE220A8397B1DCDAFU);
    Random seeded(1234567);
    EXPECT_EQ(seeded.Next(), 6457827717110365317U);
    EXPECT_EQ(seeded.Next(), 3203168211198807973U);
    EXPECT_EQ(seeded.Next(), 9817491932198370423U);
}

TEST(RandomNumbers, NthIsWhatTheNthCallReturns) {
    Random random(-5);
    const uint64_t first = random.Next();
    const uint64_t second = random.Next();
    EXPECT_EQ(Random(-5).Nth(1), first);
    EXPECT_EQ(Random(-5).Nth(2), second);
}

TEST(RandomNumbers, StayBelowTheirCount) {
    Random random(1);
    for (int draw = 0; draw < 1000; ++draw)
        EXPECT_LT(random.Below(7), 7U);
}

}  // namespace
}  // namespace embedded_test
