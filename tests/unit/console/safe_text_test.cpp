#include "krvcmd/console/text/safe_text.h"

#include <gtest/gtest.h>

#include "tests/support/captured_output.h"
#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Lines;
using krvcmd::test::TextTable;

std::string SafeCell(std::string text, Sink sink) {
    MakeCellSafe(text, 0, sink);
    return text;
}

TEST(MakeCellSafe, ReplacesEveryByteOfAControlCharacterOnATerminal) {
    for (int byte = 1; byte <= 0x7F; ++byte) {
        const bool isControl = byte <= 0x1F || byte == 0x7F;
        const std::string text = std::string("a") + static_cast<char>(byte) + "b";
        EXPECT_EQ(SafeCell(text, Sink::Terminal), isControl ? "a?b" : text) << byte;
    }
    EXPECT_EQ(SafeCell("\x1b[31mred\x1b[0m", Sink::Terminal), "?[31mred?[0m");
    EXPECT_EQ(SafeCell("\x1b]0;title\x07", Sink::Terminal), "?]0;title?");
    EXPECT_EQ(SafeCell("one\r\ntwo\tthree", Sink::Terminal), "one??two?three");
}

TEST(MakeCellSafe, ReplacesTheSecondRangeOfControlCharactersOnATerminal) {
    // U+0080 and U+009F in UTF-8; U+00A0 is a blank.
    EXPECT_EQ(SafeCell("a\xc2\x80z", Sink::Terminal), "a??z");
    EXPECT_EQ(SafeCell("a\xc2\x9b"
                       "31m",
                       Sink::Terminal),
              "a??31m");
    EXPECT_EQ(SafeCell("a\xc2\x9fz", Sink::Terminal), "a??z");
    EXPECT_EQ(SafeCell("a\xc2\xa0z", Sink::Terminal), "a\xc2\xa0z");
}

TEST(MakeCellSafe, LeavesOtherCharactersAlone) {
    for (const Sink sink : {Sink::Terminal, Sink::File}) {
        EXPECT_EQ(SafeCell("M\xc3\xbcller", sink), "M\xc3\xbcller");
        // The bytes 0x9B and 0x85 are parts of characters here.
        EXPECT_EQ(SafeCell("\xc3\x9b \xe2\x80\x85", sink), "\xc3\x9b \xe2\x80\x85");
        EXPECT_EQ(SafeCell("\xe4\xf6\xfc", sink), "\xe4\xf6\xfc");
    }
}

TEST(MakeCellSafe, ReplacesOnlyLineBreaksInAFile) {
    for (int byte = 1; byte <= 255; ++byte) {
        const std::string text = std::string("a") + static_cast<char>(byte) + "b";
        EXPECT_EQ(SafeCell(text, Sink::File), byte == '\n' ? "a?b" : text) << byte;
    }
}

TEST(MakeCellSafe, BeginsWhereTheCellBegins) {
    std::string text = "row\nnext\n";
    MakeCellSafe(text, 4, Sink::Terminal);
    EXPECT_EQ(text, "row\nnext?");
    MakeCellSafe(text, 9, Sink::File);
    EXPECT_EQ(text, "row\nnext?");
}

TEST(ControlCharacters, StandInARedirectedTableAsTheyAre) {
    TextTable table(79, {{1, "Name"}, {2, "Text"}});
    table.AddTexts({{1, "a\x1b[2Jb"}, {2, "x\ny\r\t"}});
    EXPECT_EQ(table.Printed(), Lines({"  Name  | Text  ", "----------------", " a\x1b[2Jb | x?y\r\t ", ""}));
    EXPECT_EQ(table.PrintedPlain(), "a\x1b[2Jb|x?y\r\t\n");
}

}  // namespace
