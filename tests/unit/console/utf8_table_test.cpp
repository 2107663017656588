// Not on Windows: texts are in the ANSI code page there, where every byte is a character.
#include <gtest/gtest.h>

#include "krvcmd/console/table/table_item.h"
#include "tests/support/captured_output.h"
#include "tests/unit/console/support/pseudo_terminal.h"
#include "tests/unit/console/support/text_table.h"

// Tables and texts in a UTF-8 locale, as they look on a terminal.
namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Lines;
using krvcmd::test::OutputOf;
using krvcmd::test::PseudoTerminal;
using krvcmd::test::TextTable;

constexpr uint32_t kName = 1;
constexpr uint32_t kTown = 2;

TEST(Utf8Table, StaysStraight) {
    // Müller takes 6 columns, 東京 takes 4; 6 + 4 + 4 + 1 = 15.
    TextTable table(79, {{kName, "Name"}, {kTown, "Town"}});
    table.AddTexts({{kName, "Müller"}, {kTown, "東京"}});
    table.AddTexts({{kName, "Smith"}, {kTown, "Rome"}});
    EXPECT_EQ(table.Printed(), Lines({
                                   "  Name  | Town ",
                                   "---------------",
                                   " Müller | 東京 ",
                                   " Smith  | Rome ",
                                   "",
                               }));
}

TEST(Utf8Table, CutsTextsBetweenCharacters) {
    const CTableStringItem mueller(kName, "Herr Müller");
    EXPECT_EQ(mueller.Render(8), "...üller");
    EXPECT_EQ(mueller.Render(7), "...ller");
    EXPECT_EQ(mueller.Render(11), "Herr Müller");
    EXPECT_EQ(mueller.Render(12), "Herr Müller ");
}

TEST(Utf8Table, PutsABlankWhereAWideCharacterDoesNotFit) {
    // Of the 8 columns 4 are left behind the full stops, then 3, which is one character and a half.
    const CTableStringItem text(kName, "東京大阪");
    EXPECT_EQ(text.Render(7), "...大阪");
    EXPECT_EQ(text.Render(6), "...阪 ");
    EXPECT_EQ(text.Render(3), "阪 ");
    EXPECT_EQ(text.Render(1), " ");
    // A directory that keeps its beginning loses three columns of it to the full stops: the two backslashes
    // and the first character, of which half would be left. Of the three others two and a half have room in 8
    // columns.
    const CTableDirItem directory(kName, "\\\\東京大阪");
    EXPECT_EQ(directory.Render(8), "...京大 ");
    EXPECT_EQ(directory.Render(9), "...京大阪");
}

TEST(Utf8Table, CutsALineBetweenCharacters) {
    // Two fixed columns of 8 and 8 in a line of 20: 10 and 1 + 10 are 21, one is cut; it is the last blank.
    TextTable table(20, {{kName, "Name"}, {kTown, "Town"}});
    table.AddTexts({{kName, "東京大阪"}, {kTown, "東京大阪"}});
    EXPECT_EQ(table.Printed(), Lines({
                                   "   Name   |   Town  ",
                                   "--------------------",
                                   " 東京大阪 | 東京大阪",
                                   "",
                               }));
}

TEST(Utf8Table, KeepsLinesOfOneWidthWithControlCharacters) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    TextTable table(79, {{kName, "Name"}});
    table.AddTexts({{kName, "ü\xc2\x9b\x1bü"}});
    table.AddTexts({{kName, "abcdef"}});
    table.Print();
    EXPECT_EQ(terminal.ReadText(), Lines({"  Name  ", "--------", " ü???ü  ", " abcdef ", ""}));
}

TEST(Utf8Text, WrapsByColumns) {
    COutputObject writer;
    writer.SetMaxWidth(6);
    // "Müller" has 6 columns; the blank behind it stands at position 6.
    EXPECT_EQ(OutputOf([&] { writer.PrintText(Stream::StandardOutput, "Müller Müller\n"); }),
              "Müller\nMüller\n");
    EXPECT_EQ(OutputOf([&] { writer.PrintText(Stream::StandardOutput, "ü ü ü ü ü"); }), "ü ü ü\nü ü");
}

TEST(Utf8Text, SplitsADefinitionBetweenCharacters) {
    COutputObject writer;
    writer.SetMaxWidth(10);
    // 10 - 6 - 1 = 3 columns: one wide character.
    EXPECT_EQ(OutputOf([&] { writer.PrintDefinition("S", "東京大阪"); }), "  S - 東\n\t京大阪\n");
}

}  // namespace
