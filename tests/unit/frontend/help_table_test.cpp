#include "krvcmd/frontend/report/help_table.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/frontend/parsing/parser.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

std::vector<std::string> LinesOf(std::string_view text) {
    std::vector<std::string> lines;
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The words of an example line, split as a shell splits them: at blanks outside double quotes.
std::vector<std::string> WordsOf(std::string_view line) {
    std::vector<std::string> words(1);
    bool quoted = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == ' ' && !quoted) {
            if (!words.back().empty()) words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

// All example lines of all entries, without their indentation and the program's name.
std::vector<std::string> AllExamples() {
    constexpr std::string_view kStart = "    [CmdLine] ";
    std::vector<std::string> examples;
    for (const HelpEntry& entry : HelpTable()) {
        for (const std::string& line : LinesOf(entry.example)) {
            EXPECT_TRUE(line.starts_with(kStart)) << line;
            examples.push_back(line.substr(kStart.size()));
        }
    }
    return examples;
}

std::string ParsedAndAddressed(const std::string& example) {
    const std::vector<std::string> words = WordsOf(example);
    test::Words pointers;
    for (const std::string& word : words)
        pointers.push_back(word.c_str());
    ParameterList line;
    if (Status status = ParseCommandLine(pointers, line); !status.IsOk()) return test::Text(status);
    AddressKind kind = AddressKind::None;
    ItemAddressList addresses;
    if (Status status = ReadItemAddress(line.parameters, kind, addresses); !status.IsOk())
        return test::Text(status);
    return test::Serialise(line);
}

TEST(HelpTable, HasAnEntryForEachEntryOfTheTopLevelTable) {
    const KeywordNode::Table topLevel = CommandGrammar::TopLevel();
    ASSERT_EQ(HelpTable().size(), topLevel.size());
    for (size_t i = 0; i < topLevel.size(); ++i) {
        const HelpEntry& entry = HelpTable()[i];
        EXPECT_TRUE(entry.node == nullptr || entry.node == topLevel[i]) << topLevel[i]->keyword;
    }
}

TEST(HelpTable, HasTheTextsOfEachEntry) {
    const std::string_view complete = "node description syntax legend example";
    const std::string_view expected[] = {
        /* quiet */ "",
        /* server */ "",
        /* help */ "description",
        /* ? */ "node description",
        /* service */ "node description syntax example",
        /* import */ complete,
        /* export */ complete,
        /* scan */ complete,
        /* format */ complete,
        /* enable */ complete,
        /* disable */ complete,
        /* name */ complete,
        /* query */ complete,
    };
    ASSERT_EQ(HelpTable().size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        const HelpEntry& entry = HelpTable()[i];
        std::string present = entry.node == nullptr ? "" : "node ";
        if (!entry.description.empty()) present += "description ";
        if (!entry.syntax.empty()) present += "syntax ";
        if (!entry.legend.empty()) present += "legend ";
        if (!entry.example.empty()) present += "example ";
        EXPECT_EQ(present.substr(0, present.find_last_not_of(' ') + 1), expected[i]) << i;
    }
}

TEST(HelpTable, IndentsSyntaxLegendAndExampleByFourBlanks) {
    for (const HelpEntry& entry : HelpTable()) {
        for (const std::string_view text : {entry.syntax, entry.legend, entry.example}) {
            EXPECT_TRUE(text.empty() || text.ends_with('\n'));
            for (const std::string& line : LinesOf(text))
                EXPECT_TRUE(line.starts_with("    ")) << line;
        }
    }
}

TEST(HelpTable, BeginsEachSyntaxLineButContinuationsWithItsCommand) {
    std::vector<std::string> continuations;
    for (const HelpEntry& entry : HelpTable().subspan(4)) {
        const std::string start = "    [CmdLine] " + std::string(entry.node->keyword) + " ";
        for (const std::string& line : LinesOf(entry.syntax)) {
            if (!line.starts_with(start)) continuations.push_back(line);
        }
    }
    // Eight blanks in format, nine in query.
    EXPECT_EQ(continuations,
              (std::vector<std::string>{
                  "        [label=<label>] [certify] [sequential]",
                  "         [columns=<col>] [sort=<sort>] [width=<nr>] [notable] [separator=<sep>]"}));
}

TEST(HelpTable, KeepsTheTrailingBlankOfTheFormatSyntax) {
    EXPECT_NE(HelpTable()[8].syntax.find("[.A | .B]] \n        [label="), std::string_view::npos);
}

TEST(HelpTable, HoldsNoPercentSign) {
    // It would have to be doubled to be shown.
    for (const HelpEntry& entry : HelpTable()) {
        for (const std::string_view text : {entry.description, entry.syntax, entry.legend, entry.example}) {
            EXPECT_EQ(text.find('%'), std::string_view::npos);
        }
    }
}

TEST(HelpTable, ShowsExamplesThatTheParserUnderstands) {
    const std::pair<std::string, std::string> rows[] = {
        {"service start", ": service start"},
        // These two lack the word "service", so they do not work as they are shown.
        {"quiet server=my_server restart", "error 22"},
        {"quiet server=\"sales server\" stop", "error 22"},
        {"import J @29 M2 S 1 repeat=3", ": import J={29} M={2} S={1} repeat={3}"},
        {"quiet server=\"My Server\" import J my_box S1 repeat 3",
         "quiet server=\"My Server\" : import J=\"my_box\" S={1} repeat={3}"},
        {"import J @29 M 2", ": import J={29} M={2}"},
        {"export J @29 M 2 S1 repeat 3", ": export J={29} M={2} S={1} repeat={3}"},
        {"quiet server \"My Server\" export J \"My Box\" S1 repeat=3",
         "quiet server=\"My Server\" : export J=\"My Box\" S={1} repeat={3}"},
        {"export J @29 M2", ": export J={29} M={2}"},
        {"export V @33", ": export V={33}"},
        {"scan J @29 M2 S1", ": scan J={29} M={2} S={1}"},
        {"quiet server \"My Server\" scan J \"My Box\" S 1",
         "quiet server=\"My Server\" : scan J=\"My Box\" S={1}"},
        {"scan J @29 M2", ": scan J={29} M={2}"},
        {"scan V @33", ": scan V={33}"},
        {"server MyServer format V@33 label=\"Sales 2005\"",
         "server=\"MyServer\" : format V={33} label=\"Sales 2005\""},
        {"enable J @31", ": enable J={31}"},
        {"disable J @31", ": disable J={31}"},
        {"name J @31 \"My New Jukebox Name\"", ": name J={31} <new name>=\"My New Jukebox Name\""},
        {"name V @273 \"dir1/volume273\"", ": name V={273} <new name>=\"dir1/volume273\""},
        {"query volumes col=ILl sort=lms", ": query volumes columns=\"ILl\" sort=\"lms\""},
        {"query drives J@8", ": query drives J={8}"},
        {"query magazine J@8 M1", ": query magazines J={8} M={1}"},
        {"query slots J@8 M1 sort=-sa", ": query slots J={8} M={1} sort=\"-sa\""},
        {"query volumes J MyBox M1 col=ILl sort=lms sep=,",
         ": query volumes J=\"MyBox\" M={1} columns=\"ILl\" sort=\"lms\" separator=\",\""},
    };
    const std::vector<std::string> examples = AllExamples();
    ASSERT_EQ(examples.size(), std::size(rows));
    for (size_t i = 0; i < examples.size(); ++i) {
        EXPECT_EQ(examples[i], rows[i].first);
        EXPECT_EQ(ParsedAndAddressed(examples[i]), rows[i].second) << examples[i];
    }
}

TEST(HelpTable, ShowsAddressesInTheGeneralHelpThatTheParserUnderstands) {
    const std::pair<std::string, std::string> rows[] = {
        {"J @11 M 3 S3-5", ": query J={11} M={3} S={3-5}"},
        {"J my_box M3 S 3", ": query J=\"my_box\" M={3} S={3}"},
        {"J @11 S 33", ": query J={11} S={33}"},
        {"V @517", ": query V={517}"},
    };
    const std::vector<std::string> lines = LinesOf(help_text::kExamples);
    ASSERT_EQ(lines.size(), 7U);  // an empty line and a heading before the rows, an empty line after them
    EXPECT_EQ(lines[1], "Examples:");
    for (size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(lines[i + 2], rows[i].first);
        EXPECT_EQ(ParsedAndAddressed("query " + lines[i + 2]), rows[i].second);
    }
}

}  // namespace
}  // namespace krvcmd
