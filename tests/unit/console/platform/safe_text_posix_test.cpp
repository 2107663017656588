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

TEST(MakeCellSafe, ReplacesSingleBytesThatSomeTerminalsTakeForControlCharacters) {
    std::string text =
        "a\x9b"
        "31m";
    MakeCellSafe(text, 0, Sink::Terminal);
    EXPECT_EQ(text, "a?31m");
    text = "a\x80z\x9f";
    MakeCellSafe(text, 0, Sink::Terminal);
    EXPECT_EQ(text, "a?z?");
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
