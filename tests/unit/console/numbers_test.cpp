#include "krvcmd/console/text/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Ostrel::UI::Console;

constexpr int64_t kLargest = std::numeric_limits<int64_t>::max();
constexpr int64_t kSmallest = std::numeric_limits<int64_t>::min();

std::string Formatted(int64_t value, NumberFormat format) {
    return std::string(FormatNumber(value, format).View());
}

TEST(FormatNumber, HasRoomForEveryNumber) {
    EXPECT_EQ(Formatted(0, NumberFormat::Decimal), "0");
    EXPECT_EQ(Formatted(-17, NumberFormat::Decimal), "-17");
    EXPECT_EQ(Formatted(kLargest, NumberFormat::Decimal), "9223372036854775807");
    EXPECT_EQ(Formatted(kSmallest, NumberFormat::Decimal), "-9223372036854775808");
    EXPECT_EQ(Formatted(-1, NumberFormat::Capacity), "18446744073709551615 Byte");
    EXPECT_EQ(Formatted(kLargest, NumberFormat::Capacity), "8388608.00 TByte");
    EXPECT_EQ(Formatted(kSmallest, NumberFormat::Percent), "-9223372036854775808%%");
}

TEST(FormatNumber, WritesTheSameNumberInEveryFormat) {
    EXPECT_EQ(Formatted(1'572'864, NumberFormat::Decimal), "1572864");
    EXPECT_EQ(Formatted(1'572'864, NumberFormat::Capacity), "2 MByte");
    EXPECT_EQ(Formatted(1'572'864, NumberFormat::PreciseCapacity), "1.50 MByte");
    EXPECT_EQ(Formatted(1'572'864, NumberFormat::Percent), "1572864%%");
}

struct CapacityCase {
    int64_t bytes;
    const char* text;
    const char* preciseText;
};

// Units change at decimal multiples of the unit below: 1000 Byte, 1000 KByte, 1000 MByte, 1000 GByte.
TEST(CapacityText, ChoosesTheUnitAndItsDigits) {
    const CapacityCase cases[] = {
        {0, "0", "0"},
        {1, "1 Byte", "1 Byte"},
        {999, "999 Byte", "999 Byte"},
        // 1000 / 1024 = 0.98
        {1000, "1 KByte", "1 KByte"},
        {1024, "1 KByte", "1 KByte"},
        // 1535 / 1024 = 1.499
        {1535, "1 KByte", "1 KByte"},
        // 1.5 lies in the middle: to the even neighbour
        {1536, "2 KByte", "2 KByte"},
        {2560, "2 KByte", "2 KByte"},
        // 999.5, too
        {1'023'488, "1000 KByte", "1000 KByte"},
        // 1023999 / 1024 = 999.999
        {1'023'999, "1000 KByte", "1000 KByte"},
        // 1024000 / 1048576 = 0.9765625
        {1'024'000, "1 MByte", "0.98 MByte"},
        {681'574'400, "650 MByte", "650.00 MByte"},
        // 1048575999 / 1048576 = 999.999999
        {1'048'575'999, "1000 MByte", "1000.00 MByte"},
        // 1048576000 / 1073741824 = 0.9765625
        {1'048'576'000, "0.98 GByte", "0.98 GByte"},
        // 4700000000 / 1073741824 = 4.3772
        {4'700'000'000, "4.38 GByte", "4.38 GByte"},
        // 1073741823999 / 1073741824 = 999.9999
        {1'073'741'823'999, "1000.00 GByte", "1000.00 GByte"},
        // 1073741824000 >> 20 = 1024000; / 1048576 = 0.9765625
        {1'073'741'824'000, "0.98 TByte", "0.98 TByte"},
        {1'099'511'627'776, "1.00 TByte", "1.00 TByte"},
        // 2.5 TByte
        {2'748'779'069'440, "2.50 TByte", "2.50 TByte"},
        // 2^63 - 1: shifted 8796093022207, in single precision 2^43; 2^43 / 2^20 = 8388608
        {kLargest, "8388608.00 TByte", "8388608.00 TByte"},
    };
    for (const CapacityCase& c : cases) {
        EXPECT_EQ(CapacityText(c.bytes, /*precise=*/false), c.text) << c.bytes;
        EXPECT_EQ(CapacityText(c.bytes, /*precise=*/true), c.preciseText) << c.bytes;
    }
}

TEST(CapacityText, ShowsNegativeBytesAsUnsigned) {
    // -1 is 2^64 - 1 and -2^63 is 2^63 without a sign.
    EXPECT_EQ(CapacityText(-1, /*precise=*/false), "18446744073709551615 Byte");
    EXPECT_EQ(CapacityText(kSmallest, /*precise=*/false), "9223372036854775808 Byte");
}

TEST(CapacityText, DividesInSinglePrecision) {
    // 1.125 GByte + 1 byte: exactly it lies above the middle of 1.12 and 1.13; in single precision it is in
    // the middle and goes to the even digit.
    EXPECT_EQ(CapacityText(1'207'959'553, /*precise=*/false), "1.12 GByte");
}

TEST(UsedPercent, IsZeroWithoutATotal) {
    EXPECT_EQ(UsedPercent(5, 0), 0);
    EXPECT_EQ(UsedPercent(0, -1), 0);
    EXPECT_EQ(UsedPercent(10, kSmallest), 0);
}

TEST(UsedPercent, IsTruncatedToWholePercent) {
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
