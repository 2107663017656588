#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/parsing/parser.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using test::ParsedAs;
using test::Words;

struct CommandLineRow {
    Words words;
    std::string_view expected;
};

void ExpectParsed(const std::vector<CommandLineRow>& rows) {
    for (const CommandLineRow& row : rows)
        EXPECT_EQ(ParsedAs(row.words), row.expected) << test::Spelled(row.words);
}

TEST(Parse, TakesOptionsBeforeTheCommandAndParametersAfterIt) {
    ExpectParsed({
        {{"quiet", "server", "my_server", "import", "J", "MyBox", "M", "2", "S", "1", "repeat", "3"},
         "quiet server=\"my_server\" : import J=\"MyBox\" M={2} S={1} repeat={3}"},
        {{"import", "repeat=3", "S1", "J@29"}, ": import repeat={3} S={1} J={29}"},
        {{"help", "query"}, ": help <command>=\"query\""},
        {{"?"}, ": ?"},
        {{"service", "restart"}, ": service restart"},
    });
}

TEST(Parse, TakesALineWithoutACommandAsItIs) {
    ExpectParsed({
        {{}, ":"},
        {{""}, ":"},
        {{"", "query"}, ":"},  // an empty first argument ends the line
        {{"quiet"}, "quiet :"},
        {{"server=x", "quiet"}, "server=\"x\" quiet :"},
    });
}

TEST(Parse, TakesAttachedAndSeparateValuesAlike) {
    ExpectParsed({
        {{"import", "J", "@29", "M", "1"}, ": import J={29} M={1}"},
        {{"import", "J@29", "M1"}, ": import J={29} M={1}"},
        {{"import", "J=@29", "M=1"}, ": import J={29} M={1}"},
        {{"import", "J", "=@29", "M", "=1"}, ": import J={29} M={1}"},
        {{"scan", "V=@33"}, ": scan V={33}"},
        {{"import", "J@29", "repeat", "=3"}, ": import J={29} repeat={3}"},
        {{"server", "sales server", "help"}, "server=\"sales server\" : help"},
        {{"server=sales server", "help"}, "server=\"sales server\" : help"},
        {{"server", "=sales server", "help"}, "server=\"sales server\" : help"},
        {{"server=", "help"}, "server=\"\" : help"},
    });
}

TEST(Parse, ExpandsAbbreviations) {
    ExpectParsed({
        {{"qui", "serve=x", "que", "vol", "col=ILl", "so=lms", "se", ",", "wi=80", "no"},
         "quiet server=\"x\" : query volumes columns=\"ILl\" sort=\"lms\" separator=\",\" width={80} "
         "notable"},
        {{"fo", "V@33", "la=x", "er", "ce", "se", "fi"},
         ": format V={33} label=\"x\" erase certify sequential finalize"},
    });
}

// A dash is no letter, so a word that begins with one has no attached value.
TEST(Parse, ReadsAttachedValuesAfterLettersOnly) {
    ExpectParsed({
        {{"query", "sep=,"}, ": query separator=\",\""},
        {{"query", "-sep=,"}, "error 22"},
        {{"query", "/separator=,"}, "error 22"},
        {{"-server=x", "help"}, "error 22"},
        {{"/server", "x", "help"}, "server=\"x\" : help"},
    });
}

// Letters are those of ASCII; their neighbours in the character set are none.
TEST(Parse, EndsTheLettersOfAWordBeforeTheFirstOtherCharacter) {
    ExpectParsed({
        {{"query", "JA=x"}, "error 22"},
        {{"query", "JZ=x"}, "error 22"},
        {{"query", "Ja=x"}, "error 22"},
        {{"query", "Jz=x"}, "error 22"},
        {{"query", "J[=x"}, ": query J=\"[=x\""},
        {{"query", "J`=x"}, ": query J=\"`=x\""},
        {{"query", "J{=x"}, ": query J=\"{=x\""},
        {{"query", "J\xC4=x"}, ": query J=\"\xC4=x\""},
    });
}

TEST(Parse, LetsThePlaceholderTakeAnyWordThatNoKeywordFits) {
    ExpectParsed({
        {{"help", "xyz"}, ": help <command>=\"xyz\""},
        {{"help", "?"}, ": help <command>=\"?\""},
        {{"help", "=query"}, ": help <command>=\"query\""},
        {{"help", "12"}, ": help <command>=\"12\""},
        {{"name", "J", "@31", "My New Jukebox Name"}, ": name J={31} <new name>=\"My New Jukebox Name\""},
        {{"name", "V", "@273", "dir1/volume273"}, ": name V={273} <new name>=\"dir1/volume273\""},
        {{"name", "V@273", "=x"}, ": name V={273} <new name>=\"x\""},
        {{"name", "V@273", "=="}, ": name V={273} <new name>=\"=\""},
        {{"name", "J@31", "Vault"}, ": name J={31} <new name>=\"Vault\""},
        {{"name", "new", "J@31"}, ": name <new name>=\"new\" J={31}"},
    });
}

TEST(Parse, LetsAKeywordWinOverThePlaceholder) {
    ExpectParsed({
        {{"name", "J@31", "V"}, "error 22"},   // V, whose value is missing
        {{"name", "J@31", "V1"}, "error 22"},  // V with a value that is no ID
        {{"name", "J@31", "V@1"}, ": name J={31} V={1}"},
        {{"help", "<"}, "error 22"},  // begins "<command>" itself, whose value is missing
        {{"help", "<", "query"}, ": help <command>=\"query\""},
        {{"name", "J@31", "J old"}, "error 22"},  // what follows the blank does not count
    });
}

TEST(Parse, KeepsEverythingInTheOrderAndNumberOfTheLine) {
    ExpectParsed({
        {{"query", "slots", "volumes", "slots"}, ": query slots volumes slots"},
        {{"import", "J@8", "repeat=1", "repeat=2"}, ": import J={8} repeat={1} repeat={2}"},
        {{"quiet", "quiet", "help"}, "quiet quiet : help"},
        {{"server=a", "server=b", "help"}, "server=\"a\" server=\"b\" : help"},
    });
}

TEST(Parse, AcceptsCombinationsThatOnlyTheCommandCanJudge) {
    ExpectParsed({
        {{"scan", "J@8", "V@33"}, ": scan J={8} V={33}"},
        {{"query", "slots", "J@8", "S1,2", ".A"}, ": query slots J={8} S={1,2} .A"},
        {{"query", "drives", "J@8", "D1,2"}, ": query drives J={8} D={1,2}"},
        {{"service", "start", "stop"}, ": service start stop"},
        {{"service"}, ": service"},
    });
}

TEST(Parse, RefusesWordsThatNothingTakes) {
    ExpectParsed({
        {{"xyz"}, "error 22"},
        {{"quiet", "xyz"}, "error 22"},
        {{"delete", "V@33"}, "error 22"},
        {{"yes", "help"}, "error 22"},
        {{"=x"}, "error 22"},
        {{"query", "sq"}, "error 22"},
        {{"query", "xyz"}, "error 22"},
        {{"query", "configuration"}, "error 22"},
        {{"query", "filter=x"}, "error 22"},
        {{"import", "V@33"}, "error 22"},
        {{"import", "j@8"}, "error 22"},
        {{"scan", "J@8", ".A"}, "error 22"},
        {{"?", "query"}, "error 22"},
        {{"query", "volumes", " "}, "error 22"},
    });
}

TEST(Parse, RefusesOptionsAndCommandsAfterTheCommand) {
    ExpectParsed({
        {{"query", "quiet"}, "error 22"},
        {{"query", "volumes", "server=x"}, "error 22"},
        {{"query", "scan"}, "error 22"},
        {{"query", "query"}, "error 22"},
        {{"import", "export"}, "error 22"},
    });
}

TEST(Parse, RefusesMissingAndMalformedValues) {
    ExpectParsed({
        {{"server"}, "error 22"},
        {{"import", "J"}, "error 22"},
        {{"import", "J@8", "M"}, "error 22"},
        {{"import", "J@8", "repeat="}, "error 22"},
        {{"import", "J@8", "repeat", "=", "3"}, "error 22"},
        {{"import", "J@8", "Mx"}, "error 22"},
        {{"scan", "V", "273"}, "error 22"},
    });
}

TEST(Parse, RefusesAValueOfAKeywordThatTakesNone) {
    ExpectParsed({
        {{"format", "V@33", "erase=1"}, "error 22"},
        {{"format", "V@33", "erase="}, "error 22"},
        {{"query", "slots5"}, "error 22"},
        {{"query", "volumes,"}, "error 22"},
        {{"quiet=1", "help"}, "error 22"},
        {{"query=volumes"}, "error 22"},
        {{"help=query"}, "error 22"},
        {{"service", "start!"}, "error 22"},
    });
}

TEST(Parse, RefusesEmptyArgumentsAfterTheFirst) {
    ExpectParsed({
        {{"query", "", "volumes"}, "error 22"},
        {{"query", "volumes", ""}, "error 22"},
        {{"server", "", "help"}, "error 22"},
    });
}

TEST(Parse, KeepsWhatWasParsedBeforeTheFault) {
    ParameterList line;
    const Words words = {"quiet", "scan", "J@8", "Sx", "M1"};
    EXPECT_EQ(test::Text(ParseCommandLine(words, line)), "error 22");
    EXPECT_EQ(test::Serialise(line), "quiet : scan J={8}");
}

TEST(Parse, RemembersTheParameterOfTheCommandWord) {
    ParameterList line;
    ASSERT_TRUE(ParseCommandLine(Words{"que", "volumes"}, line).IsOk());
    EXPECT_EQ(line.command, &test::Node("query"));
    EXPECT_EQ(line.commandParameter.node, &test::Node("query"));
    EXPECT_EQ(line.commandParameter.valueKind, ValueKind::None);
}

TEST(Parse, RefusesTokensThatAreNoWords) {
    for (const TokenType type : {TokenType::Number, TokenType::Equals, TokenType::Blank}) {
        ParameterList line;
        TokenStream stream({Token{type, "help"}});
        EXPECT_EQ(test::Text(Parse(line, stream, CommandGrammar::TopLevel())), "error 22");
    }
}

TEST(Parse, RefusesASecondCommandAmongTheSameCandidates) {
    // The grammar offers no command among the parameters of another.
    const KeywordNode inner = test::MakeNode("inner", KeywordKind::Command);
    const KeywordNode* const children[] = {&inner};
    KeywordNode outer = test::MakeNode("outer", KeywordKind::Command);
    outer.children = children;
    const KeywordNode* const topLevel[] = {&outer};
    ParameterList line;
    TokenStream stream({Token{TokenType::Word, "outer"}, Token{TokenType::Word, "inner"}});
    EXPECT_EQ(test::Text(Parse(line, stream, topLevel)), "error 22");
    EXPECT_EQ(line.command, &outer);
}

TEST(Parse, AsksForExactlyOnePlaceholder) {
    constexpr ValueSpec kText[] = {{ValueSpec::kText}};
    KeywordNode first = test::MakeNode("<first>");
    KeywordNode second = test::MakeNode("<second>");
    first.values = second.values = kText;
    const KeywordNode* const two[] = {&first, &second};
    ParameterList line;
    TokenStream stream({Token{TokenType::Word, "word"}});
    EXPECT_EQ(test::Text(Parse(line, stream, two)), "error 22");
}

}  // namespace
}  // namespace krvcmd
