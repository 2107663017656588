#include "krvcmd/console/text/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Ostrel::UI::Console;

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

TEST(IsAscii, HoldsForAnEmptyText) {
    EXPECT_TRUE(IsAscii(""));
}

TEST(IsAscii, FindsEveryOtherByteInEveryPlace) {
    for (size_t size = 1; size <= 20; ++size) {
        for (size_t place = 0; place < size; ++place) {
            for (int byte = 0; byte <= 255; ++byte) {
                // Neighbours at both ends of the range.
                std::string text(size, '\x01');
                if (place > 0) text[place - 1] = '\x7f';
                text[place] = static_cast<char>(byte);
                ASSERT_EQ(IsAscii(text), byte >= 0x01 && byte <= 0x7F)
                    << "byte " << byte << " in place " << place << " of " << size;
            }
        }
    }
}

struct WellFormedCase {
    std::string_view text;
    char32_t codePoint;
    size_t size;
};

TEST(FirstUtf8Character, ReadsCharactersOfEveryLength) {
    const WellFormedCase cases[] = {
        {"a", U'a', 1},
        {"\x7f", 0x7F, 1},
        {"\xc2\x80", 0x80, 2},
        {"\xc3\xbcx", 0xFC, 2},
        {"\xdf\xbf", 0x7FF, 2},
        {"\xe0\xa0\x80", 0x800, 3},
        {"\xed\x9f\xbf", 0xD7FF, 3},
        {"\xee\x80\x80", 0xE000, 3},
        {"\xef\xbf\xbf", 0xFFFF, 3},
        {"\xf0\x90\x80\x80", 0x10000, 4},
        {"\xf4\x8f\xbf\xbf", 0x10FFFF, 4},
    };
    for (const WellFormedCase& c : cases) {
        const Utf8Character character = FirstUtf8Character(c.text);
        EXPECT_TRUE(character.isWellFormed) << testing::PrintToString(c.text);
        EXPECT_EQ(character.codePoint, c.codePoint);
        EXPECT_EQ(character.size, c.size) << testing::PrintToString(c.text);
    }
}

TEST(FirstUtf8Character, ReadsAByteThatBelongsToNoCharacterByItself) {
    for (const std::string_view text : {
             "\x80", "\xbf",                      // continuation bytes
             "\xc3", "\xe2\x82", "\xf0\x9f\x98",  // cut off
             "\xc3(", "\xe2\x82(", "\xf0\x9f\x98(", "\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf",
             "\xf0\x8f\xbf\xbf",                                  // longer than needed
             "\xed\xa0\x80", "\xed\xbf\xbf",                      // surrogates
             "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80", "\xff",  // beyond the last character
         }) {
        const Utf8Character character = FirstUtf8Character(text);
        EXPECT_FALSE(character.isWellFormed) << testing::PrintToString(text);
        EXPECT_EQ(character.size, 1U) << testing::PrintToString(text);
        EXPECT_EQ(character.codePoint, static_cast<unsigned char>(text[0])) << testing::PrintToString(text);
    }
}

}  // namespace
