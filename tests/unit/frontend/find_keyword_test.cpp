#include "krvcmd/frontend/grammar/keyword.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

std::string Found(KeywordNode::Table candidates, std::string_view word) {
    const KeywordNode* node = FindKeyword(candidates, word);
    return node == nullptr ? "nothing" : std::string(node->keyword);
}

// A word that is selected by nothing has the expectation "nothing".
struct WordRow {
    std::string_view word;
    std::string_view expected;
};

void ExpectKeywords(KeywordNode::Table candidates, const std::vector<WordRow>& rows) {
    for (const WordRow& row : rows)
        EXPECT_EQ(Found(candidates, row.word), row.expected) << "word: " << row.word;
}

TEST(KeywordEquals, ComparesExactlyAndWithCase) {
    EXPECT_TRUE(KeywordEquals("query", "query"));
    EXPECT_FALSE(KeywordEquals("Query", "query"));
    EXPECT_FALSE(KeywordEquals("QUERY", "query"));
    EXPECT_FALSE(KeywordEquals("quer", "query"));
    EXPECT_FALSE(KeywordEquals("queryx", "query"));
    EXPECT_TRUE(KeywordEquals("", ""));
    EXPECT_FALSE(KeywordEquals("", "query"));
}

TEST(KeywordEquals, ComparesBytesOutsideTheAsciiRangeToo) {
    EXPECT_TRUE(KeywordEquals("\xFC\x01\xE9", "\xFC\x01\xE9"));
    EXPECT_FALSE(KeywordEquals("\xFC", "\xDC"));
}

TEST(KeywordEquals, IgnoresWhatFollowsABlank) {
    EXPECT_TRUE(KeywordEquals("query volumes", "query"));
    EXPECT_TRUE(KeywordEquals("query ", "query"));
    EXPECT_FALSE(KeywordEquals(" query", "query"));
    EXPECT_TRUE(KeywordEquals(" query", ""));
}

TEST(KeywordEquals, TakesTextsInPiecesOf31CharactersAndABlankEndsItsPieceOnly) {
    // "quer", a blank and 26 letters are the first piece of 31; the second piece is "y".
    const std::string word = "quer " + std::string(26, 'z') + "y";
    EXPECT_TRUE(KeywordEquals(word, "query"));
    // With one letter less the "y" still belongs to the first piece.
    EXPECT_FALSE(KeywordEquals("quer " + std::string(25, 'z') + "y", "query"));
    EXPECT_TRUE(KeywordEquals("quer " + std::string(25, 'z') + "y", "quer"));
}

TEST(KeywordEquals, ComparesTextsLongerThanOnePiece) {
    const std::string longText(100, 'a');
    EXPECT_TRUE(KeywordEquals(longText, longText));
    EXPECT_FALSE(KeywordEquals(longText, longText + "a"));
}

TEST(KeywordStartsWith, HoldsForLeadingPartsAndForEqualTexts) {
    EXPECT_TRUE(KeywordStartsWith("q", "query"));
    EXPECT_TRUE(KeywordStartsWith("quer", "query"));
    EXPECT_TRUE(KeywordStartsWith("query", "query"));
    EXPECT_FALSE(KeywordStartsWith("queryx", "query"));
    EXPECT_FALSE(KeywordStartsWith("uery", "query"));
    EXPECT_FALSE(KeywordStartsWith("Q", "query"));
}

TEST(KeywordStartsWith, TakesAnEmptyWordAsTheBeginningOfEveryKeyword) {
    EXPECT_TRUE(KeywordStartsWith("", "query"));
    EXPECT_TRUE(KeywordStartsWith("", ""));
    EXPECT_TRUE(KeywordStartsWith(" rest", "query"));
}

TEST(FindKeyword, SelectsTopLevelKeywordsByTheirUniqueBeginnings) {
    ExpectKeywords(CommandGrammar::TopLevel(), {
                                                   {"quiet", "quiet"},
                                                   {"qui", "quiet"},
                                                   {"que", "query"},
                                                   {"query", "query"},
                                                   {"serve", "server"},
                                                   {"server", "server"},
                                                   {"servi", "service"},
                                                   {"service", "service"},
                                                   {"h", "help"},
                                                   {"help", "help"},
                                                   {"?", "?"},
                                                   {"i", "import"},
                                                   {"ex", "export"},
                                                   {"en", "enable"},
                                                   {"sc", "scan"},
                                                   {"f", "format"},
                                                   {"d", "disable"},
                                                   {"n", "name"},
                                               });
}

TEST(FindKeyword, RejectsAmbiguousAndUnknownTopLevelWords) {
    ExpectKeywords(CommandGrammar::TopLevel(), {
                                                   {"q", "nothing"},     // quiet, query
                                                   {"qu", "nothing"},    // quiet, query
                                                   {"s", "nothing"},     // server, service, scan
                                                   {"se", "nothing"},    // server, service
                                                   {"ser", "nothing"},   // server, service
                                                   {"serv", "nothing"},  // server, service
                                                   {"e", "nothing"},     // export, enable
                                                   {"", "nothing"},      // everything
                                                   {"xyz", "nothing"},
                                                   {"queryx", "nothing"},
                                                   {"Query", "nothing"},
                                                   {"QUERY", "nothing"},
                                                   {"delete", "nothing"},  // defined, but not in this table
                                                   {"yes", "nothing"},
                                                   {"J", "nothing"},
                                               });
}

TEST(FindKeyword, TakesDashFormsOfTheKeywordsThatAllowThem) {
    ExpectKeywords(CommandGrammar::TopLevel(), {
                                                   {"-quiet", "quiet"},
                                                   {"/quiet", "quiet"},
                                                   {"/qui", "quiet"},
                                                   {"-q", "quiet"},
                                                   {"-s", "server"},
                                                   {"/server", "server"},
                                                   {"-?", "?"},
                                                   {"/?", "?"},
                                                   {"-", "nothing"},  // begins -quiet, -server and -?
                                                   {"/", "nothing"},
                                                   {"--quiet", "nothing"},
                                                   {"-query", "nothing"},
                                                   {"/help", "nothing"},
                                                   {"-service", "nothing"},
                                               });
}

TEST(FindKeyword, SelectsParametersOfQueryByTheirUniqueBeginnings) {
    const KeywordNode::Table parameters = test::Node("query").children;
    ExpectKeywords(parameters,
                   {
                       {"s", "nothing"},  // sort, separator, slots
                       {"sl", "slots"},      {"so", "sort"},
                       {"se", "separator"},  {"S", "S"},
                       {"j", "jukeboxes"},   {"J", "J"},
                       {"m", "magazines"},   {"M", "M"},
                       {"d", "drives"},      {"D", "D"},
                       {"v", "volumes"},     {"V", "V"},
                       {"c", "columns"},     {"n", "notable"},
                       {"w", "width"},       {"magazine", "magazines"},
                       {".A", ".A"},         {".B", ".B"},
                       {".", "nothing"},  // .A, .B
                       {"-n", "notable"},    {"/volumes", "volumes"},
                       {"-se", "separator"}, {"-s", "nothing"},  // -separator, -slots; sort has no dash form
                       {"-so", "nothing"},   {"-J", "nothing"},
                       {"quiet", "nothing"}, {"scan", "nothing"},
                   });
}

TEST(FindKeyword, TakesLowerAndUpperCaseAsDifferent) {
    // "j" begins only "jukeboxes" among the parameters of query, and nothing among those of import.
    EXPECT_EQ(Found(test::Node("import").children, "j"), "nothing");
    EXPECT_EQ(Found(test::Node("import").children, "J"), "J");
}

TEST(FindKeyword, PrefersAnExactKeywordToALongerOneInEitherOrder) {
    const KeywordNode sort = test::MakeNode("sort");
    const KeywordNode sorted = test::MakeNode("sorted");
    const KeywordNode* const shorterFirst[] = {&sort, &sorted};
    const KeywordNode* const longerFirst[] = {&sorted, &sort};
    EXPECT_EQ(Found(shorterFirst, "sort"), "sort");
    EXPECT_EQ(Found(longerFirst, "sort"), "sort");
    EXPECT_EQ(Found(longerFirst, "sorted"), "sorted");
    EXPECT_EQ(Found(longerFirst, "sor"), "nothing");
    EXPECT_EQ(Found(shorterFirst, "sorte"), "sorted");
}

TEST(FindKeyword, CountsANodeOnceHoweverManyOfItsFormsFit) {
    const KeywordNode sort = test::MakeNode("sort");
    KeywordNode dashed = test::MakeNode("dashed");
    dashed.dashAllowed = true;
    const KeywordNode* const candidates[] = {&sort, &dashed};
    EXPECT_EQ(Found(candidates, "-"), "dashed");
    EXPECT_EQ(Found(candidates, "-dashed"), "dashed");
    EXPECT_EQ(Found(candidates, "/d"), "dashed");
    EXPECT_EQ(Found(candidates, "-sort"), "nothing");
}

TEST(FindKeyword, FindsNothingAmongNoCandidates) {
    EXPECT_EQ(Found({}, "help"), "nothing");
    EXPECT_EQ(Found({}, ""), "nothing");
}

}  // namespace
}  // namespace krvcmd
