#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "krvcmd/console/text/safe_text.h"

namespace {

using namespace Ostrel::UI::Console;

TEST(SafeCellText, LeavesLettersOfTheConsolesCodePageAlone) {
    // Without a console it is the ANSI code page, that of Western Europe under Wine.
    ASSERT_EQ(GetConsoleOutputCP(), 0U);
    ASSERT_EQ(GetACP(), 1252U);
    // The Euro sign, a closing guillemet and Y with diaeresis; then pairs that would be a control character
    // and a direction mark in UTF-8.
    for (const std::string text : {"a\x80z \x9b", "31m \x9f", "\xc2\x80 \xc3\x9b", "\xd8\x9c \xe2\x80\xae"})
        EXPECT_EQ(SafeCellText(text, Sink::Terminal), text);
}

TEST(SafeCellText, ReplacesBytesThatAreControlCharactersInTheConsolesCodePage) {
    EXPECT_EQ(SafeCellText("\x1b[31mred\r\n\x7f", Sink::Terminal), "?[31mred???");
    // No letters have these places.
    EXPECT_EQ(SafeCellText("\x81 \x8d \x8f \x90 \x9d", Sink::Terminal), "? ? ? ? ?");
}

}  // namespace
