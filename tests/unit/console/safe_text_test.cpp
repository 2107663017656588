#include "krvcmd/console/text/safe_text.h"

#include <gtest/gtest.h>

#include "tests/support/captured_output.h"
#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Lines;
using krvcmd::test::TextTable;

TEST(SafeCellText, ReplacesEveryByteOfAControlCharacterOnATerminal) {
    for (int byte = 1; byte <= 0x7F; ++byte) {
        const bool isControl = byte <= 0x1F || byte == 0x7F;
        const std::string text = std::string("a") + static_cast<char>(byte) + "b";
        EXPECT_EQ(SafeCellText(text, Sink::Terminal), isControl ? "a?b" : text) << byte;
    }
    EXPECT_EQ(SafeCellText("\x1b[31mred\x1b[0m", Sink::Terminal), "?[31mred?[0m");
    EXPECT_EQ(SafeCellText("\x1b]0;title\x07", Sink::Terminal), "?]0;title?");
    EXPECT_EQ(SafeCellText("one\r\ntwo\tthree", Sink::Terminal), "one??two?three");
}

TEST(SafeCellText, LeavesOtherCharactersAlone) {
    for (const Sink sink : {Sink::Terminal, Sink::File}) {
        EXPECT_EQ(SafeCellText("M\xc3\xbcller", sink), "M\xc3\xbcller");
        EXPECT_EQ(SafeCellText("\xe4\xf6\xfc", sink), "\xe4\xf6\xfc");
    }
}

TEST(SafeCellText, ReplacesOnlyLineBreaksInAFile) {
    for (int byte = 1; byte <= 255; ++byte) {
        const std::string text = std::string("a") + static_cast<char>(byte) + "b";
        EXPECT_EQ(SafeCellText(text, Sink::File), byte == '\n' ? "a?b" : text) << byte;
    }
}

TEST(NeedsReplacing, HoldsForWhatAnySinkReplaces) {
    EXPECT_FALSE(NeedsReplacing(""));
    EXPECT_FALSE(NeedsReplacing("Disc 1"));
    EXPECT_FALSE(NeedsReplacing("M\xc3\xbcller"));
    EXPECT_TRUE(NeedsReplacing("one\ntwo"));
    EXPECT_TRUE(NeedsReplacing("\x1b"));
}

TEST(ControlCharacters, StandInARedirectedTableAsTheyAre) {
    TextTable table(79, {{1, "Name"}, {2, "Text"}});
    table.AddTexts({{1, "a\x1b[2Jb"}, {2, "x\ny\r\t"}});
    EXPECT_EQ(table.Printed(), Lines({"  Name  | Text  ", "----------------", " a\x1b[2Jb | x?y\r\t ", ""}));
    EXPECT_EQ(table.PrintedPlain(), "a\x1b[2Jb|x?y\r\t\n");
}

}  // namespace
