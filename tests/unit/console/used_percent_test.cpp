#include "krvcmd/console/text/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Ostrel::UI::Console;

constexpr int64_t kLargest = std::numeric_limits<int64_t>::max();
constexpr int64_t kSmallest = std::numeric_limits<int64_t>::min();

TEST(UsedPercent, IsZeroWithoutATotal) {
    EXPECT_EQ(UsedPercent(5, 0), 0);
    EXPECT_EQ(UsedPercent(0, -1), 0);
    EXPECT_EQ(UsedPercent(10, kSmallest), 0);
}

TEST(UsedPercent, IsCutToWholePerCent) {
    EXPECT_EQ(UsedPercent(0, 1), 100);
    EXPECT_EQ(UsedPercent(1, 1), 0);
    EXPECT_EQ(UsedPercent(1, 3), 66);      // 200 / 3 = 66.67
    EXPECT_EQ(UsedPercent(2, 3), 33);      // 100 / 3 = 33.33
    EXPECT_EQ(UsedPercent(1, 1000), 99);   // 99900 / 1000 = 99.9
    EXPECT_EQ(UsedPercent(991, 1000), 0);  // 900 / 1000 = 0.9
    EXPECT_EQ(UsedPercent(990, 1000), 1);
}

TEST(UsedPercent, IsNegativeWhenMoreIsFreeThanThereIs) {
    EXPECT_EQ(UsedPercent(150, 100), -50);
    EXPECT_EQ(UsedPercent(4, 3), -33);      // -100 / 3 = -33.33, cut towards zero
    EXPECT_EQ(UsedPercent(1004, 1000), 0);  // -0.4
    EXPECT_EQ(UsedPercent(-50, 100), 150);  // more used than there is
    EXPECT_EQ(UsedPercent(kLargest, 1), -kLargest);
}

TEST(UsedPercent, DoesNotOverflowForHugeCapacities) {
    EXPECT_EQ(UsedPercent(0, kLargest), 100);
    EXPECT_EQ(UsedPercent(kLargest, kLargest), 0);
    EXPECT_EQ(UsedPercent(kLargest / 2, kLargest), 50);      // 2^62 of 2^63 - 1: 50.00..
    EXPECT_EQ(UsedPercent(kLargest / 2 + 1, kLargest), 49);  // 2^62 - 1 of it: 49.99..
    EXPECT_EQ(UsedPercent(1, kLargest), 99);
    // (2^63 - 1 + 2^63) * 100 / (2^63 - 1) = 200.00..
    EXPECT_EQ(UsedPercent(kSmallest, kLargest), 200);
    // (2^62 + 2^63) * 100 / 2^62 = 300
    EXPECT_EQ(UsedPercent(kSmallest, int64_t{1} << 62), 300);
    // A result of more than 64 bits is the largest number.
    EXPECT_EQ(UsedPercent(kSmallest, 1), kLargest);
}

TEST(UsedPercent, AgreesWithPlainArithmeticWhereThatDoesNotOverflow) {
    for (int64_t total = 1; total <= 130; ++total) {
        for (int64_t free = -140; free <= 270; ++free) {
            ASSERT_EQ(UsedPercent(free, total), (total - free) * 100 / total) << free << " of " << total;
        }
    }
}

}  // namespace
