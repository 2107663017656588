#include "krvcmd/frontend/report/help.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "tests/support/captured_output.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using Ostrel::UI::Console::CKrvQueryTable;
using test::Lines;

// Paragraphs of the texts, each one line until the console wraps it.
constexpr std::string_view kNameDescription =
    "The name of jukeboxes or volumes may be renamed. Renaming a volume causes the file system to "
    "modify the path the volume is visible under.";
constexpr std::string_view kPurpose =
    "This is the command line interface to the Carvoline service. It can be used to import, export "
    "and format media and to query information about media managed by Carvoline.";
constexpr std::string_view kIds =
    "Jukeboxes and volumes can be addressed using their unique ID. When specifying an ID it must "
    "be prepended using the @-sign. Additionally, jukeboxes can be addressed using their name and "
    "volumes can be addressed by their location (jukebox, magazine, slot, side).";
constexpr std::string_view kNumbers =
    "Magazines, slots and drives will be addressed by their number starting with 1. Slots can be "
    "specified using either the number within the jukebox or in the magazine, by specifying or "
    "omitting the magazine number.";
constexpr std::string_view kLists =
    "You can address multiple slots with one command by separating them with a comma or by "
    "specifying a range of slots: S1,5,7 or S1-5. You can omit the slot number to perform an "
    "operation for all slots in a magazine. Also, an operation will be performed for all slots in "
    "a jukebox, if you omit both, the magazine and the slot number.";
constexpr std::string_view kAbbreviations =
    "All key words can be abbreviated as long as they remain unique. For example, you can specify "
    "'juke' rather than 'jukebox', but you cannot use 'qu' for 'query' because it cannot be "
    "distinguished from 'quiet'.";

const std::string kCommands = Lines({
    "commands:",
    "    help: usage/help output",
    "    ?: usage/help output",
    "    service: start/stop/restart the Carvoline service",
    "    import: import one or more media",
    "    export: export one or more media",
    "    scan: rescan one or more slots",
    "    format: erase/format/finalize one or more volumes",
    "    enable: enable jukeboxes, magazines, drives or volumes",
    "    disable: disable jukeboxes, magazines, drives or volumes",
    "    name: rename jukebox or set the directory name for volumes",
    "    query: query information",
});

class HelpTest : public testing::Test {
  protected:
    HelpTest() { GetProgramNames() = {"krvcmd", "Carvoline"}; }

    // What the printer writes to standard output in lines of at most `width` characters.
    static std::string Printed(const std::function<void(HelpPrinter&)>& print, uint32_t width = 0) {
        return test::OutputOf([&] {
            CKrvQueryTable writer;
            writer.SetMaxWidth(width);
            HelpPrinter printer(writer);
            print(printer);
            EXPECT_TRUE(writer.Finish().IsOk());
        });
    }

    static std::string HelpFor(std::string_view word) {
        return Printed([word](HelpPrinter& printer) { printer.PrintHelp(word); });
    }

    static std::string GeneralHelp() {
        return Printed([](HelpPrinter& printer) { printer.PrintGeneralHelp(); });
    }

    // The explanation of the column letters, which is the query table's.
    static std::string ColumnHelp() {
        return test::OutputOf([] {
            CKrvQueryTable writer;
            writer.SetMaxWidth(0);
            writer.PrintColumnHelp();
            EXPECT_TRUE(writer.Finish().IsOk());
        });
    }
};

TEST(Pad, IndentsAndFillsTheTextUpToTheWidth) {
    EXPECT_EQ(Pad(0, 0, "J"), "J");
    EXPECT_EQ(Pad(4, 0, "J"), "    J");
    EXPECT_EQ(Pad(0, 10, "J"), "J         ");
    EXPECT_EQ(Pad(4, 10, "repeat"), "    repeat    ");
    EXPECT_EQ(Pad(2, 3, ""), "     ");
}

TEST(Pad, FillsNothingBehindATextThatIsAsLongAsTheWidthOrLonger) {
    EXPECT_EQ(Pad(4, 10, "sequential"), "    sequential");
    EXPECT_EQ(Pad(4, 10, "<command> x"), "    <command> x");
}

TEST_F(HelpTest, PrintsAKeywordLineOfIndentKeywordAndText) {
    const KeywordNode& repeat = test::Node("import.repeat");
    EXPECT_EQ(Printed([&](HelpPrinter& printer) { printer.PrintKeywordLine(12, 10, repeat); }),
              "            repeat    : specifies number of repeats, eg. repeat=5\n");
    EXPECT_EQ(Printed([&](HelpPrinter& printer) { printer.PrintKeywordLine(4, 0, repeat); }),
              "    repeat: specifies number of repeats, eg. repeat=5\n");
}

TEST_F(HelpTest, WrapsAKeywordLineAsOneText) {
    // The last blank at a position not above 40 is the one behind "banner", at 38.
    const KeywordNode& quiet = test::Node("quiet");
    EXPECT_EQ(Printed([&](HelpPrinter& printer) { printer.PrintKeywordLine(4, 0, quiet); }, 40),
              "    quiet: quiet mode (suppress banner\n"
              "and success message)\n");
}

TEST_F(HelpTest, ListsTheCommonOptions) {
    EXPECT_EQ(Printed([](HelpPrinter& printer) { printer.PrintCommonOptions(); }),
              "common options:\n"
              "    quiet: quiet mode (suppress banner and success message)\n"
              "    server: specify server name to connect with\n");
}

TEST_F(HelpTest, ListsTheCommandsWithoutTheirParameters) {
    EXPECT_EQ(Printed([](HelpPrinter& printer) { printer.PrintCommands(HelpPrinter::Parameters::Hide); }),
              kCommands);
}

TEST_F(HelpTest, TellsHowHelpIsAskedFor) {
    EXPECT_EQ(Printed([](HelpPrinter& printer) { printer.PrintHelpOnHelp(); }),
              "krvcmd [<common options>] [<command> [<parameter>]]\n" + kCommands +
                  Lines({
                      "",
                      "display all available commands and options:",
                      "krvcmd help",
                      "",
                      "display detailed help for a command:",
                      "krvcmd help <command>",
                  }));
}

TEST_F(HelpTest, IndentsParametersByTwelveInTheGeneralLayoutAndByFourInTheDetailedOne) {
    const KeywordNode& scan = test::Node("scan");
    EXPECT_EQ(
        Printed([&](HelpPrinter& printer) { printer.PrintParameters(scan, HelpPrinter::Layout::General); }),
        Lines({
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            V         : volume ID, eg. V @273",
        }));
    EXPECT_EQ(
        Printed([&](HelpPrinter& printer) { printer.PrintParameters(scan, HelpPrinter::Layout::Detailed); }),
        Lines({
            "parameter:",
            "    J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "    M         : magazine number, eg. M 1 or M1",
            "    S         : slot number in magazine, or absolute slot in jukebox",
            "    V         : volume ID, eg. V @273",
        }));
}

TEST_F(HelpTest, FillsTheParameterColumnExactlyWithSequential) {
    const std::string parameters = Printed([](HelpPrinter& printer) {
        printer.PrintParameters(test::Node("format"), HelpPrinter::Layout::Detailed);
    });
    EXPECT_NE(parameters.find("    certify   : certify volume\n    sequential: sequential\n"),
              std::string::npos);
}

TEST_F(HelpTest, PrintsNoHeadingForACommandWithoutParameters) {
    EXPECT_EQ(Printed([](HelpPrinter& printer) {
                  printer.PrintParameters(test::Node("?"), HelpPrinter::Layout::Detailed);
              }),
              "");
}

TEST_F(HelpTest, PrintsTheDetailedHelpOfACommand) {
    EXPECT_EQ(HelpFor("service"), Lines({
                                      "Start, stop or restart Carvoline service.",
                                      "",
                                      "syntax:",
                                      "    krvcmd service start",
                                      "    krvcmd service stop",
                                      "    krvcmd service restart",
                                      "",
                                      "parameter:",
                                      "    start     : start service",
                                      "    stop      : stop service",
                                      "    restart   : restart service",
                                      "",
                                      "example:",
                                      "    krvcmd service start",
                                      "    krvcmd quiet server=my_server restart",
                                      "    krvcmd quiet server=\"sales server\" stop",
                                  }));
}

TEST_F(HelpTest, NeverPrintsTheLegendOfTheSyntax) {
    EXPECT_EQ(HelpFor("name"), Lines({
                                   kNameDescription,
                                   "",
                                   "syntax:",
                                   "    krvcmd name J <jukebox> <new_name>",
                                   "    krvcmd name V <volume> <new_name>",
                                   "",
                                   "parameter:",
                                   "    J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
                                   "    V         : volume ID, eg. V @273",
                                   "    <new name>: the new name",
                                   "",
                                   "example:",
                                   "    krvcmd name J @31 \"My New Jukebox Name\"",
                                   "    krvcmd name V @273 \"dir1/volume273\"",
                               }));
}

TEST_F(HelpTest, DescribesTheColumnLettersBetweenParametersAndExampleOfQuery) {
    const std::string columnHelp = ColumnHelp();
    ASSERT_TRUE(columnHelp.starts_with("\nFollowing column identifiers"));
    ASSERT_TRUE(columnHelp.ends_with("  o - Status of the item.\n"));
    const std::string help = HelpFor("query");
    const size_t position = help.find(columnHelp);
    ASSERT_NE(position, std::string::npos);
    EXPECT_TRUE(help.substr(0, position).ends_with("    volumes   : information about volumes\n"));
    EXPECT_TRUE(
        help.substr(position + columnHelp.size()).starts_with("\nexample:\n    krvcmd query volumes col="));
}

TEST_F(HelpTest, ChoosesTheFirstEntryThatTheWordBegins) {
    const std::pair<std::string, std::string> rows[] = {
        {"e", "Export one ore more media from"},  // before enable
        {"en", "Following items may be enabled:"},   {"d", "Following items may be disabled:"},
        {"s", "Start, stop or restart Carvoline"},  // before scan
        {"sc", "Scan one ore more media of"},        {"q", "Query information about jukeboxes"},
        {"qu", "Query information about jukeboxes"},  // quiet has no help of its own
        {"i", "Import one ore more media into"},     {"format", "Format one ore more media of"},
        {"n", "The name of jukeboxes or volumes"},
    };
    for (const auto& [word, start] : rows)
        EXPECT_TRUE(HelpFor(word).starts_with(start)) << word;
}

TEST_F(HelpTest, PrintsOnlyOneLineForTheQuestionMark) {
    EXPECT_EQ(HelpFor("?"), "usage/help output\n");
}

TEST_F(HelpTest, PrintsTheGeneralHelpForWordsWithoutAnEntry) {
    const std::string general = GeneralHelp();
    for (const std::string_view word :
         {"", "xyz", "help", "h", "he", "hel", "quiet", "server", "delete", "Query", "queryx", "-?", "yes"}) {
        EXPECT_EQ(HelpFor(word), general) << word;
    }
}

TEST_F(HelpTest, TellsWhetherTheDetailedHelpPrintedSomething) {
    bool printed = false;
    const auto printDetailedHelp = [&printed](std::string_view word) {
        return Printed([&](HelpPrinter& printer) { printed = printer.PrintDetailedHelp(word); });
    };
    EXPECT_NE(printDetailedHelp("query"), "");
    EXPECT_TRUE(printed);
    for (const std::string_view word : {"xyz", "help", "quiet"}) {
        EXPECT_EQ(printDetailedHelp(word), "");
        EXPECT_FALSE(printed) << word;
    }
}

TEST_F(HelpTest, PrintsTheGeneralHelpFromUsageToTheLastCommand) {
    const std::string expected =
        Lines({
            "krvcmd [<common options>] [<command> [<parameter>]]",
            "",
            kPurpose,
            "",
            kIds,
            kNumbers,
            kLists,
            "",
            "Examples:",
            "J @11 M 3 S3-5",
            "J my_box M3 S 3",
            "J @11 S 33",
            "V @517",
            "",
            kAbbreviations,
            "",
            "common options:",
            "    quiet: quiet mode (suppress banner and success message)",
            "    server: specify server name to connect with",
            "commands:",
            "    help: usage/help output",
            "        parameter:",
            "            <command> : command keyword, to get further information",
            "    ?: usage/help output",
            "    service: start/stop/restart the Carvoline service",
            "        parameter:",
            "            start     : start service",
            "            stop      : stop service",
            "            restart   : restart service",
            "    import: import one or more media",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            repeat    : specifies number of repeats, eg. repeat=5",
            "    export: export one or more media",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            V         : volume ID, eg. V @273",
            "            repeat    : specifies number of repeats, eg. repeat=5",
            "    scan: rescan one or more slots",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            V         : volume ID, eg. V @273",
            "    format: erase/format/finalize one or more volumes",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            .A        : medium side A, eg. S 1 .A",
            "            .B        : medium side B, eg. S 1 .B",
            "            V         : volume ID, eg. V @273",
            "            label     : volume label string",
            "            erase     : erase volume",
            "            certify   : certify volume",
            "            sequential: sequential",
            "            finalize  : finalize volume",
            "    enable: enable jukeboxes, magazines, drives or volumes",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            D         : drive number, eg. D 1 or D1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            V         : volume ID, eg. V @273",
            "    disable: disable jukeboxes, magazines, drives or volumes",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            D         : drive number, eg. D 1 or D1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            V         : volume ID, eg. V @273",
            "    name: rename jukebox or set the directory name for volumes",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            V         : volume ID, eg. V @273",
            "            <new name>: the new name",
            "    query: query information",
            "        parameter:",
            "            J         : jukebox ID or jukebox name, eg. J @17 or J MyBox",
            "            M         : magazine number, eg. M 1 or M1",
            "            S         : slot number in magazine, or absolute slot in jukebox",
            "            .A        : medium side A, eg. S 1 .A",
            "            .B        : medium side B, eg. S 1 .B",
            "            D         : drive number, eg. D 1 or D1",
            "            V         : volume ID, eg. V @273",
            "            columns   : specify columns to output",
            "            sort      : the table row sort sequence",
            "            width     : the table width",
            "            notable   : unformatted output",
            "            separator : output separator",
            "            jukeboxes : information about jukeboxes",
            "            magazines : information about magazines",
            "            drives    : information about drives",
            "            slots     : information about slots",
            "            volumes   : information about volumes",
        }) +
        ColumnHelp();
    EXPECT_EQ(GeneralHelp(), expected);
}

}  // namespace
}  // namespace krvcmd
