// Not on Windows: texts are in the ANSI code page there, where every byte is a character.
#include <gtest/gtest.h>

#include "krvcmd/console/table/table_item.h"
#include "krvcmd/console/text/display_width.h"
#include "krvcmd/console/text/safe_text.h"
#include "krvcmd/console/text/wrap.h"
#include "tests/support/captured_output.h"
#include "tests/unit/console/support/pseudo_terminal.h"
#include "tests/unit/console/support/text_table.h"

// Texts and tables in a UTF-8 locale.
namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::Lines;
using krvcmd::test::PseudoTerminal;
using krvcmd::test::Rendered;
using krvcmd::test::TextTable;

constexpr std::string_view kMueller = "M\xc3\xbcller";           // Müller
constexpr std::string_view kTokyo = "\xe6\x9d\xb1\xe4\xba\xac";  // two characters of two columns each
constexpr std::string_view kAccented = "ae\xcc\x81z";            // a, e with a combining accent, z

TEST(Utf8DisplayText, CountsColumns) {
    EXPECT_EQ(DisplayLength("abc"), 3U);
    EXPECT_EQ(DisplayLength(kMueller), 6U);
    EXPECT_EQ(DisplayLength(kTokyo), 4U);
    EXPECT_EQ(DisplayLength(kAccented), 3U);
    EXPECT_EQ(DisplayLength("\xf0\x9f\x98\x80"), 2U);  // an emoji
}

TEST(Utf8DisplayText, CountsAByteThatBelongsToNoCharacterAsOne) {
    EXPECT_EQ(DisplayLength("a\xff"
                            "b"),
              3U);
    EXPECT_EQ(DisplayLength("\xe6\x9d"), 2U);
}

TEST(Utf8DisplayText, CountsEveryByteOfAControlCharacter) {
    EXPECT_EQ(DisplayLength("\x1b[0m"), 4U);
    EXPECT_EQ(DisplayLength("\xc2\x9b"
                            "\xc3\xbc"),
              3U);
    EXPECT_EQ(DisplayLength("\xc3\xbc\n"), 2U);
}

TEST(Utf8DisplayText, CountsALineBreakButNoNul) {
    EXPECT_EQ(DisplayLength("a line\n"), 7U);
    EXPECT_EQ(DisplayLength(std::string_view("a\0b", 3)), 2U);
}

TEST(Utf8DisplayText, CutsNoCharacterAtTheBeginning) {
    EXPECT_EQ(LeadingPart(kMueller, 1), "M");
    EXPECT_EQ(LeadingPart(kMueller, 2), "M\xc3\xbc");
    EXPECT_EQ(LeadingPart(kMueller, 6), kMueller);
    EXPECT_EQ(LeadingPart(kTokyo, 1), "");
    EXPECT_EQ(LeadingPart(kTokyo, 2), kTokyo.substr(0, 3));
    EXPECT_EQ(LeadingPart(kTokyo, 3), kTokyo.substr(0, 3));
    EXPECT_EQ(LeadingPart(kTokyo, 4), kTokyo);
    // A mark stays with its character.
    EXPECT_EQ(LeadingPart(kAccented, 2), "ae\xcc\x81");
    EXPECT_EQ(LeadingPart(kAccented, 1), "a");
}

TEST(Utf8DisplayText, CutsNoCharacterAtTheEnd) {
    EXPECT_EQ(TrailingPart(kMueller, 4), "ller");
    EXPECT_EQ(TrailingPart(kMueller, 5), "\xc3\xbcller");
    EXPECT_EQ(TrailingPart(kMueller, 6), kMueller);
    EXPECT_EQ(TrailingPart(kTokyo, 0), "");
    EXPECT_EQ(TrailingPart(kTokyo, 1), "");
    EXPECT_EQ(TrailingPart(kTokyo, 2), kTokyo.substr(3));
    EXPECT_EQ(TrailingPart(kTokyo, 3), kTokyo.substr(3));
    // A mark goes with its character.
    EXPECT_EQ(TrailingPart(kAccented, 1), "z");
    EXPECT_EQ(TrailingPart(kAccented, 2), "e\xcc\x81z");
}

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
    EXPECT_EQ(Rendered(mueller, 8), "...üller");
    EXPECT_EQ(Rendered(mueller, 7), "...ller");
    EXPECT_EQ(Rendered(mueller, 11), "Herr Müller");
    EXPECT_EQ(Rendered(mueller, 12), "Herr Müller ");
}

TEST(Utf8Table, PutsABlankWhereAWideCharacterDoesNotFit) {
    // Of the 8 columns 4 are left after the full stops, then 3, which is one character and a half.
    const CTableStringItem text(kName, "東京大阪");
    EXPECT_EQ(Rendered(text, 7), "...大阪");
    EXPECT_EQ(Rendered(text, 6), "...阪 ");
    EXPECT_EQ(Rendered(text, 3), "阪 ");
    EXPECT_EQ(Rendered(text, 1), " ");
    // A directory that keeps its beginning loses three columns of it to the full stops: the two backslashes
    // and the first character, of which half would be left. Of the three others two and a half have room in 8
    // columns.
    const CTableDirItem directory(kName, "\\\\東京大阪");
    EXPECT_EQ(Rendered(directory, 8), "...京大 ");
    EXPECT_EQ(Rendered(directory, 9), "...京大阪");
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

// What a terminal shows of the text.
std::string Shown(std::string_view text) {
    return SafeCellText(text, Sink::Terminal);
}

std::string Utf8(std::u8string_view text) {
    return {text.begin(), text.end()};
}

TEST(Utf8SafeText, ReplacesMarksThatTurnTheDirectionAround) {
    for (const std::u8string_view mark :
         {u8"\u202A", u8"\u202B", u8"\u202C", u8"\u202D", u8"\u202E", u8"\u2066", u8"\u2067", u8"\u2068",
          u8"\u2069", u8"\u200E", u8"\u200F"}) {
        EXPECT_EQ(Shown("a" + Utf8(mark) + "z"), "a???z") << Utf8(mark);
    }
    EXPECT_EQ(Shown(Utf8(u8"a\u061Cz")), "a??z");
}

TEST(Utf8SafeText, ReplacesCharactersWithoutAWidth) {
    for (const std::u8string_view character :
         {u8"\u200B", u8"\u200C", u8"\u200D", u8"\uFEFF", u8"\u2060", u8"\u2028"}) {
        EXPECT_EQ(Shown("a" + Utf8(character) + "z"), "a???z") << Utf8(character);
    }
    // Tags.
    EXPECT_EQ(Shown(Utf8(u8"a\U000E0000z")), "a????z");
    EXPECT_EQ(Shown(Utf8(u8"a\U000E007Fz")), "a????z");
}

TEST(Utf8SafeText, LeavesTheNeighboursOfTheseCharactersAlone) {
    for (const std::u8string_view text :
         {u8"a\u061Bz", u8"a\u200Az", u8"a\u2010z", u8"a\u2027z", u8"a\u202Fz", u8"a\u205Fz", u8"a\u2070z",
          u8"a\uFF01z", u8"\u00DB \u05D0\u05D1", u8"\u6771\u4EAC"}) {
        EXPECT_EQ(Shown(Utf8(text)), Utf8(text));
        EXPECT_FALSE(NeedsReplacing(Utf8(text)));
    }
}

TEST(Utf8SafeText, LeavesTheJoinersOfEmojiAlone) {
    // A woman technician with a skin tone, a family, a rainbow flag, a man shrugging.
    for (const std::u8string_view emoji :
         {u8"\U0001F469\U0001F3FD\u200D\U0001F4BB", u8"\U0001F468\u200D\U0001F469\u200D\U0001F467",
          u8"\U0001F3F3\uFE0F\u200D\U0001F308", u8"\U0001F937\u200D\u2642\uFE0F"}) {
        EXPECT_EQ(Shown(Utf8(emoji)), Utf8(emoji));
    }
    EXPECT_EQ(Shown(Utf8(u8"\U0001F468\u200Da")), Utf8(u8"\U0001F468???a"));
    EXPECT_EQ(Shown(Utf8(u8"a\u200D\U0001F468")), Utf8(u8"a???\U0001F468"));
    EXPECT_EQ(Shown(Utf8(u8"\U0001F468\u200D\u200D\U0001F468")), Utf8(u8"\U0001F468??????\U0001F468"));
    EXPECT_EQ(Shown(Utf8(u8"\U0001F468\u200D")), Utf8(u8"\U0001F468???"));
}

TEST(Utf8SafeText, LeavesFourMarksOnACharacter) {
    const std::string four = Utf8(u8"e\u0301\u0302\u0303\u0304");
    EXPECT_EQ(Shown(four + four), four + four);
    EXPECT_EQ(Shown(four + Utf8(u8"\u0305\u0306z\u0301")), four + "????z" + Utf8(u8"\u0301"));
    // At the beginning the blank before the text bears them.
    EXPECT_EQ(Shown(Utf8(u8"\u0301\u0302\u0303\u0304\u0305")), Utf8(u8"\u0301\u0302\u0303\u0304") + "??");
}

TEST(Utf8SafeText, TakesSingleBytesForControlCharacters) {
    EXPECT_EQ(Shown("a\x9b"
                    "31m"),
              "a?31m");
    EXPECT_EQ(Shown("\xc3\x9b"
                    "2J"),
              "\xc3\x9b"
              "2J");
    EXPECT_EQ(Shown(Utf8(u8"\u2005")), Utf8(u8"\u2005"));
}

TEST(Utf8SafeText, LeavesAFileAsItIs) {
    const std::string text = Utf8(u8"a\u202Eb\u200Bc\uFEFFd\u0301\u0301\u0301\u0301\u0301");
    EXPECT_EQ(SafeCellText(text, Sink::File), text);
    TextTable table(79, {{kName, "Name"}});
    table.AddTexts({{kName, Utf8(u8"a\u202Eb")}});
    EXPECT_EQ(table.Printed(), Lines({" Name ", "------", Utf8(u8" a\u202Eb   "), ""}));
}

TEST(Utf8SafeText, KeepsLinesOfOneWidthOnATerminal) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    TextTable table(79, {{kName, "Name"}});
    table.AddTexts({{kName, Utf8(u8"a\u202Eb")}});
    table.AddTexts({{kName, Utf8(u8"e\u0301\u0301\u0301\u0301\u0301\u0301z")}});
    table.AddTexts({{kName, "abcdef"}});
    table.Print();
    EXPECT_EQ(terminal.ReadText(), Lines({"  Name  ", "--------", " a???b  ",
                                          Utf8(u8" e\u0301\u0301\u0301\u0301????z "), " abcdef ", ""}));
}

TEST(Utf8SafeText, CutsWhatTheTerminalShows) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    const CTableStringItem text(kName, Utf8(u8"abcdef\u202Egh"));
    EXPECT_EQ(Rendered(text, 8), "...???gh");
    EXPECT_EQ(Rendered(text, 7), "...??gh");
}

TEST(Utf8SafeText, SortsRowsByTheirOwnTexts) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    const CTableStringItem isolate(kName, Utf8(u8"a\u2066"));
    const CTableStringItem embedding(kName, Utf8(u8"a\u202A"));
    EXPECT_EQ(embedding.Compare(isolate), -1);
    EXPECT_EQ(isolate.Compare(embedding), 1);
}

TEST(Utf8SafeText, HoldsForServiceTexts) {
    const PseudoTerminal terminal(80);
    ASSERT_TRUE(terminal.IsReady());
    EXPECT_EQ(SafeText(Utf8(u8"drive \u202Eeldi"), Stream::StandardOutput), "drive ???eldi");
}

TEST(Utf8Text, WrapsByColumns) {
    // "Müller" has 6 columns; the blank after it is at position 6.
    EXPECT_EQ(WrapText("Müller Müller\n", 6), "Müller\nMüller\n");
    EXPECT_EQ(WrapText("ü ü ü ü ü", 6), "ü ü ü\nü ü");
}

TEST(Utf8Text, SplitsADefinitionBetweenCharacters) {
    // 10 - 6 - 1 = 3 columns: one wide character.
    EXPECT_EQ(DefinitionText("S", "東京大阪", 10), "  S - 東\n\t京大阪\n");
}

}  // namespace
