#include "krvcmd/console/text/percent_signs.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using namespace Ostrel::UI::Console;

struct PercentCase {
    std::string_view text;
    std::string_view shown;
};

TEST(ResolvePercentSigns, ShowsADoubledSignAsOneAndAnyOtherAsItself) {
    const PercentCase cases[] = {
        {"", ""},
        {"no sign", "no sign"},
        {"%", "%"},
        {"%%", "%"},
        {"%%%", "%%"},
        {"%%%%", "%%"},
        {"%%%%%", "%%%"},
        {"50%%", "50%"},
        {"50%% and 60%% of 100%%", "50% and 60% of 100%"},
        {"100%s %n", "100%s %n"},
        {"%d%%%s", "%d%%s"},
        {"%5.2f%%", "%5.2f%"},
        {"% %", "% %"},
        {"%%n", "%n"},
        {"a%", "a%"},
    };
    for (const PercentCase& c : cases) {
        std::string text(c.text);
        ResolvePercentSigns(text);
        EXPECT_EQ(text, c.shown) << c.text;
    }
}

TEST(ResolvePercentSigns, AgreesWithReadingCharacterByCharacter) {
    // All texts of up to ten characters over "%" and "a".
    for (unsigned length = 0; length <= 10; ++length) {
        for (unsigned bits = 0; bits < (1U << length); ++bits) {
            std::string text;
            for (unsigned i = 0; i < length; ++i)
                text += (bits >> i & 1U) != 0 ? '%' : 'a';
            std::string expected;
            for (size_t i = 0; i < text.size(); ++i) {
                expected += text[i];
                if (text.substr(i, 2) == "%%") ++i;
            }
            std::string shown = text;
            ResolvePercentSigns(shown);
            ASSERT_EQ(shown, expected) << text;
        }
    }
}

}  // namespace
