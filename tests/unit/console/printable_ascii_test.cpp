#include "krvcmd/console/text/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Ostrel::UI::Console::IsPrintableAscii;

TEST(IsPrintableAscii, HoldsForAnEmptyText) {
    EXPECT_TRUE(IsPrintableAscii(""));
}

TEST(IsPrintableAscii, FindsEveryOtherByteInEveryPlace) {
    for (size_t size = 1; size <= 20; ++size) {
        for (size_t place = 0; place < size; ++place) {
            for (int byte = 0; byte <= 255; ++byte) {
                // Neighbours at both ends of the range.
                std::string text(size, ' ');
                if (place > 0) text[place - 1] = '~';
                text[place] = static_cast<char>(byte);
                ASSERT_EQ(IsPrintableAscii(text), byte >= 0x20 && byte <= 0x7E)
                    << "byte " << byte << " in place " << place << " of " << size;
            }
        }
    }
}

}  // namespace
