#include "krvcmd/frontend/report/help.h"

#include <gtest/gtest.h>

#include <string>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/report/help_table.h"
#include "tests/support/captured_output.h"

namespace krvcmd {
namespace {

using test::Lines;

// The help for `word` as a console without a limit shows it, with the placeholders for the names.
std::string HelpFor(std::string_view word) {
    std::string help;
    for (const HelpText& piece : HelpTexts(word))
        help += piece.term.empty() ? piece.text : "  " + piece.term + " - " + piece.text + "\n";
    return help;
}

std::string ColumnIdentifiers() {
    const std::string help = HelpFor("query");
    const size_t begin = help.find("\nFollowing column identifiers");
    return help.substr(begin, help.find("\nexample:\n") - begin);
}

TEST(HelpTexts, ShowTheHelpOfACommand) {
    EXPECT_EQ(HelpFor("service"), Lines({
                                      "Start, stop or restart [ProductName] service.",
                                      "",
                                      "syntax:",
                                      "    [CmdLine] service start",
                                      "    [CmdLine] service stop",
                                      "    [CmdLine] service restart",
                                      "",
                                      "parameter:",
                                      "    start     : start service",
                                      "    stop      : stop service",
                                      "    restart   : restart service",
                                      "",
                                      "example:",
                                      "    [CmdLine] service start",
                                      "    [CmdLine] quiet server=my_server restart",
                                      "    [CmdLine] quiet server=\"sales server\" stop",
                                  }));
    EXPECT_EQ(HelpFor("?"), "usage/help output\n");
}

TEST(HelpTexts, ShowDescriptionSyntaxParametersAndExampleOfEachCommandAndNoLegend) {
    for (const HelpEntry& entry : HelpTable().subspan(4)) {
        const std::string help = HelpFor(entry.node->keyword);
        const std::string start =
            std::string(entry.description) + "\nsyntax:\n" + std::string(entry.syntax) + "\nparameter:\n    ";
        EXPECT_TRUE(help.starts_with(start)) << help;
        EXPECT_TRUE(help.ends_with("\nexample:\n" + std::string(entry.example))) << help;
        EXPECT_EQ(help.find("<jukebox>:"), std::string::npos) << help;
    }
}

TEST(HelpTexts, FillParameterNamesUpToTenCharacters) {
    EXPECT_NE(HelpFor("format").find("\n    certify   : certify volume\n    sequential: sequential\n"),
              std::string::npos);
    EXPECT_NE(HelpFor("name").find("\n    J         : jukebox ID or jukebox name, eg. J @17 or J MyBox\n"
                                   "    V         : volume ID, eg. V @273\n"
                                   "    <new name>: the new name\n"),
              std::string::npos);
}

TEST(HelpTexts, ListTheColumnIdentifiersBetweenParametersAndExampleOfQuery) {
    const std::string identifiers = ColumnIdentifiers();
    EXPECT_TRUE(identifiers.starts_with(
        "\n" + std::string(help_text::kColumnIdentifiers) +
        "  S - Number of slots in magazine or jukebox.\n  D - Number of drives in the jukebox.\n"));
    EXPECT_TRUE(identifiers.ends_with("  o - Status of the item.\n"));
    EXPECT_NE(HelpFor("query").find("    volumes   : information about volumes\n" + identifiers),
              std::string::npos);
}

TEST(HelpTexts, MakeOneDefinitionOfEachColumnIdentifier) {
    std::string terms;
    for (const HelpText& piece : HelpTexts("query"))
        terms += piece.term;
    EXPECT_EQ(terms, "SDMIJNLmdsaCRPFnlvftxXzyYo");
}

TEST(HelpTexts, BeginTheGeneralHelpWithUsageIntroductionAndOptions) {
    const std::string start = std::string(help_text::kUsage) + std::string(help_text::kIntroduction) +
                              std::string(help_text::kExamples) + std::string(help_text::kAbbreviationNote) +
                              Lines({
                                  "common options:",
                                  "    quiet: quiet mode (suppress banner and success message)",
                                  "    server: specify server name to connect with",
                                  "commands:",
                                  "    help: usage/help output",
                                  "        parameter:",
                                  "            <command> : command keyword, to get further information",
                                  "    ?: usage/help output",
                                  "    service: start/stop/restart the [ProductName] service",
                                  "        parameter:",
                                  "            start     : start service",
                                  "            stop      : stop service",
                                  "            restart   : restart service",
                                  "    import: import one or more media",
                                  "        parameter:",
                              });
    EXPECT_TRUE(HelpFor("").starts_with(start)) << HelpFor("");
}

TEST(HelpTexts, ListEveryCommandOfTheGeneralHelpWithItsParameters) {
    const std::string help = HelpFor("");
    size_t position = help.find("commands:\n");
    const auto expectNext = [&](const std::string& line) {
        position = help.find(line, position);
        EXPECT_NE(position, std::string::npos) << line;
    };
    for (const KeywordNode* command : CommandGrammar::TopLevel().subspan(2)) {
        expectNext("\n    " + std::string(command->keyword) + ": ");
        for (const KeywordNode* parameter : command->children)
            expectNext("\n            " + std::string(parameter->keyword));
    }
    EXPECT_TRUE(help.ends_with("            volumes   : information about volumes\n" + ColumnIdentifiers()));
}

TEST(HelpTexts, ChooseTheFirstCommandThatTheWordBegins) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"e", "export"},                                       // before enable
        {"en", "enable"}, {"d", "disable"}, {"s", "service"},  // before scan
        {"sc", "scan"},   {"q", "query"},   {"qu", "query"},   // quiet has no help of its own
        {"i", "import"},  {"n", "name"},    {"format V", "format"},
    };
    for (const auto& [word, command] : rows)
        EXPECT_EQ(HelpFor(word), HelpFor(command)) << word;
}

TEST(HelpTexts, ShowTheGeneralHelpForWordsWithoutAnEntry) {
    for (const std::string_view word :
         {"xyz", "help", "h", "he", "hel", "quiet", "server", "delete", "Query", "queryx", "-?", "yes"}) {
        EXPECT_EQ(HelpFor(word), HelpFor("")) << word;
    }
}

// A blank ends the text that is compared, so these words are the beginning of every keyword.
TEST(HelpTexts, ShowHowToAskForHelpWhenTheWordBeginsWithABlank) {
    for (const std::string_view word : {" ", " x", " query"}) {
        EXPECT_EQ(HelpFor(word), std::string(help_text::kUsage) +
                                     Lines({
                                         "commands:",
                                         "    help: usage/help output",
                                         "    ?: usage/help output",
                                         "    service: start/stop/restart the [ProductName] service",
                                         "    import: import one or more media",
                                         "    export: export one or more media",
                                         "    scan: rescan one or more slots",
                                         "    format: erase/format/finalize one or more volumes",
                                         "    enable: enable jukeboxes, magazines, drives or volumes",
                                         "    disable: disable jukeboxes, magazines, drives or volumes",
                                         "    name: rename jukebox or set the directory name for volumes",
                                         "    query: query information",
                                         "",
                                         "display all available commands and options:",
                                         "[CmdLine] help",
                                         "",
                                         "display detailed help for a command:",
                                         "[CmdLine] help <command>",
                                     }));
    }
}

TEST(PrintHelp, WrapsEachTextAsOneAndSplitsDefinitions) {
    GetProgramNames() = {"krvcmd", "Carvoline"};
    const auto printed = [](std::string_view word, uint32_t width) {
        return test::OutputOf([&] {
            Ostrel::UI::Console::COutputObject writer;
            writer.SetMaxWidth(width);
            PrintHelp(word, writer);
            EXPECT_TRUE(writer.Finish().IsOk());
        });
    };
    const std::string general = printed("", 40);
    // The last blank at a position not above 40 is the one after "banner", at 38.
    EXPECT_NE(general.find("\n    quiet: quiet mode (suppress banner\nand success message)\n"),
              std::string::npos);
    // 6 + 39 characters do not fit; 39 - 6 - 1 = 32 stay in the first line.
    EXPECT_NE(printed("query", 39).find("\n  S - Number of slots in magazine or j\n\tukebox.\n"),
              std::string::npos);
    EXPECT_TRUE(printed("service", 0).starts_with("Start, stop or restart Carvoline service.\n\nsyntax:\n"));
}

}  // namespace
}  // namespace krvcmd
