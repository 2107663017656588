#include "krvcmd/console/text/short_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

using namespace Ostrel::UI::Console;

TEST(ShortText, IsEmptyAfterConstruction) {
    EXPECT_EQ(ShortText<10>().View(), "");
}

TEST(ShortText, JoinsTextsAndNumbers) {
    ShortText<20> text;
    text.Append("Tower");
    text.Append("");
    text.Append("-");
    text.AppendNumber(int32_t{-12});
    text.AppendNumber(uint64_t{7});
    EXPECT_EQ(text.View(), "Tower--127");
}

TEST(ShortText, HoldsAsMuchAsItsCapacity) {
    ShortText<20> text;
    text.AppendNumber(std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(text.View(), "18446744073709551615");
}

TEST(ShortText, LosesWhatIsBeyondItsCapacity) {
    ShortText<4> text;
    text.Append("abc");
    text.Append("def");
    EXPECT_EQ(text.View(), "abcd");
}

}  // namespace
