#include <gtest/gtest.h>

#include <string>

#include "krvcmd/console/text/safe_text.h"

namespace {

using namespace Ostrel::UI::Console;

TEST(MakeCellSafe, LeavesLettersOfTheAnsiCodePageAlone) {
    // In the code page of Western Europe these are the Euro sign, a closing guillemet and Y with diaeresis.
    std::string text =
        "a\x80z \x9b"
        "31m \x9f";
    const std::string before = text;
    MakeCellSafe(text, 0, Sink::Terminal);
    EXPECT_EQ(text, before);
}

TEST(MakeCellSafe, ReplacesBytesBelowABlankOnAConsole) {
    std::string text = "\x1b[31mred\r\n";
    MakeCellSafe(text, 0, Sink::Terminal);
    EXPECT_EQ(text, "?[31mred??");
}

}  // namespace
