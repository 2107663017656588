// Not on Windows: no Windows process creates a console for itself, and single bytes are letters of the ANSI
// code page there, as safe_text_windows_test.cpp says.
#include <gtest/gtest.h>

#include <string>

#include "krvcmd/console/text/safe_text.h"
#include "tests/support/captured_output.h"
#include "tests/unit/console/support/pseudo_terminal.h"
#include "tests/unit/console/support/text_table.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Lines;
using krvcmd::test::OutputOf;
using krvcmd::test::PseudoTerminal;
using krvcmd::test::TextTable;

TEST(SafeCellText, ReplacesTheSecondRangeOfControlCharactersOnATerminal) {
    // U+0080 and U+009F in UTF-8; U+00A0 is a blank.
    EXPECT_EQ(SafeCellText("a\xc2\x80z", Sink::Terminal), "a??z");
    EXPECT_EQ(SafeCellText("a\xc2\x9b"
                           "31m",
                           Sink::Terminal),
              "a??31m");
    EXPECT_EQ(SafeCellText("a\xc2\x9fz", Sink::Terminal), "a??z");
    EXPECT_EQ(SafeCellText("a\xc2\xa0z", Sink::Terminal), "a\xc2\xa0z");
}

TEST(SafeCellText, JudgesEveryByteInALocaleWhoseCharactersAreBytes) {
    EXPECT_EQ(SafeCellText("a\x9b"
                           "31m",
                           Sink::Terminal),
              "a?31m");
    EXPECT_EQ(SafeCellText("a\x80z\x9f", Sink::Terminal), "a?z?");
    // On a terminal with ISO 8859-1 the second byte begins a control sequence that clears the screen.
    EXPECT_EQ(SafeCellText("\xc3\x9b"
                           "2J",
                           Sink::Terminal),
              "\xc3?2J");
    EXPECT_EQ(SafeCellText("\xe2\x80\x85", Sink::Terminal), "\xe2??");
    EXPECT_EQ(SafeCellText("\xc3\x9b", Sink::File), "\xc3\x9b");
}

TEST(SafeCellText, ReplacesDirectionMarksInEveryLocale) {
    EXPECT_EQ(SafeCellText("a\xe2\x80\xaez", Sink::Terminal), "a???z");
    EXPECT_EQ(SafeCellText("a\xef\xbb\xbfz", Sink::Terminal), "a???z");
}

TEST(ControlCharacters, AreShownAsQuestionMarksInATableOnATerminal) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    TextTable table(79, {{1, "Name"}, {2, "Text"}});
    table.AddTexts({{1, "a\x1b[2Jb"}, {2, "x\ny"}});
    table.Print();
    EXPECT_EQ(terminal.ReadText(), Lines({"  Name  | Text ", "---------------", " a?[2Jb | x?y  ", ""}));
}

TEST(ControlCharacters, DoNotSplitAnUnformattedRow) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    TextTable table(79, {{1, "Name"}, {2, "Text"}});
    table.SetFormatted(false);
    // The separator is the user's own.
    table.SetSeparator("\t");
    table.AddTexts({{1, "a\nb"}, {2, "\x1b"}});
    table.Print();
    EXPECT_EQ(terminal.ReadText(), "a?b\t?\n");
}

TEST(ControlCharacters, OfServiceTextsAreShownAsQuestionMarksOnATerminalOnly) {
    {
        const PseudoTerminal terminal(80);
        ASSERT_TRUE(terminal.IsReady());
        EXPECT_EQ(SafeText("bad\x1b[31m\ntext", Stream::StandardOutput), "bad?[31m?text");
        EXPECT_EQ(SafeText("\x1b[2J", Stream::StandardOutput), "?[2J");
    }
    OutputOf([] { EXPECT_EQ(SafeText("bad\x1b[31m\ntext", Stream::StandardOutput), "bad\x1b[31m\ntext"); });
}

}  // namespace
