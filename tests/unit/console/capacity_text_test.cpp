#include "krvcmd/console/text/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Ostrel::UI::Console;

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
        {std::numeric_limits<int64_t>::max(), "8388608.00 TByte", "8388608.00 TByte"},
    };
    for (const CapacityCase& c : cases) {
        EXPECT_EQ(CapacityText(c.bytes, CapacityPrecision::Whole), c.text) << c.bytes;
        EXPECT_EQ(CapacityText(c.bytes, CapacityPrecision::TwoDecimals), c.preciseText) << c.bytes;
    }
}

TEST(CapacityText, ShowsNegativeBytesAsUnsigned) {
    // -1 is 2^64 - 1 and -2^63 is 2^63 without a sign.
    EXPECT_EQ(CapacityText(-1, CapacityPrecision::Whole), "18446744073709551615 Byte");
    EXPECT_EQ(CapacityText(std::numeric_limits<int64_t>::min(), CapacityPrecision::Whole),
              "9223372036854775808 Byte");
}

TEST(CapacityText, DividesInSinglePrecision) {
    // 1.125 GByte + 1 byte: exactly it lies above the middle of 1.12 and 1.13; in single precision it is in
    // the middle and goes to the even digit.
    EXPECT_EQ(CapacityText(1'207'959'553, CapacityPrecision::Whole), "1.12 GByte");
}

}  // namespace
