// Not on Windows: completion scripts are made on the building machine, and are the same for every system.
#include "packaging/generate/completion_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "packaging/generate/fill_template.h"
#include "packaging/generate/shell_tables.h"

namespace krvcmd {
namespace {

using std::string_view;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Keywords = std::vector<string_view>;

const Keywords kAddress = {"J", "M", "S", ".A", ".B", "D", "V"};

const CompletionRow& RowOf(const std::vector<CompletionRow>& rows, string_view level, string_view keyword) {
    const auto row = std::ranges::find_if(rows, [&](const CompletionRow& candidate) {
        return candidate.level == level && candidate.keyword == keyword;
    });
    if (row == rows.end()) throw std::runtime_error("no such row");
    return *row;
}

TEST(CanStandTogether, FollowsTheRulesOfAddressing) {
    struct Case {
        Keywords keywords;
        bool expected;
    };
    const Case cases[] = {
        {{}, true},          {{"V"}, true},
        {{"M"}, true},  // a jukebox may still come
        {{".A"}, true},      {{"J", "M", "S", ".A"}, true},
        {{"J", "D"}, true},  {{"J", "V"}, false},
        {{"V", "S"}, false}, {{"D", "M"}, false},
        {{"D", "V"}, false}, {{"D", ".B"}, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(CanStandTogether(kAddress, c.keywords, {}), c.expected)
            << testing::PrintToString(c.keywords);
    }
}

TEST(CanStandTogether, ListLeavesNoRoomForNarrowerParts) {
    EXPECT_TRUE(CanStandTogether(kAddress, {"J", "S"}, {"S"}));
    EXPECT_FALSE(CanStandTogether(kAddress, {"S", ".A"}, {"S"}));
    EXPECT_TRUE(CanStandTogether(kAddress, {"M"}, {"M"}));
    EXPECT_FALSE(CanStandTogether(kAddress, {"M", "S"}, {"M"}));
    EXPECT_FALSE(CanStandTogether(kAddress, {"J", "D"}, {"J"}));
}

TEST(CanStandTogether, AsksForParametersThatTheCommandKnows) {
    // Without J among the command's parameters nothing makes an address of a magazine.
    EXPECT_FALSE(CanStandTogether({"M", "V"}, {"M"}, {}));
}

// The scripts exclude keyword by keyword; that is enough only as long as this holds.
TEST(CanStandTogether, IsDecidedByPairs) {
    for (unsigned choice = 0; choice < 1U << kAddress.size(); ++choice) {
        Keywords chosen;
        for (size_t i = 0; i < kAddress.size(); ++i) {
            if ((choice >> i & 1U) != 0) chosen.push_back(kAddress[i]);
        }
        bool everyPair = true;
        for (const string_view a : chosen) {
            for (const string_view b : chosen)
                everyPair = everyPair && CanStandTogether(kAddress, {a, b}, {});
        }
        EXPECT_EQ(CanStandTogether(kAddress, chosen, {}), everyPair) << testing::PrintToString(chosen);
    }
}

TEST(CompletionRows, HoldEachKeywordOfEachLevelOnce) {
    const std::vector<CompletionRow> rows = MakeCompletionRows();
    std::set<std::pair<string_view, string_view>> seen;
    for (const CompletionRow& row : rows) {
        EXPECT_TRUE(seen.emplace(row.level, row.keyword).second) << row.level << " " << row.keyword;
        EXPECT_FALSE(row.help.empty());
    }
    // 13 before the command; help 1, service 3, import 4, export 5, scan 4, format 11, enable 5,
    // disable 5, name 3, query 17 behind it.
    EXPECT_THAT(rows, SizeIs(13 + 1 + 3 + 4 + 5 + 4 + 11 + 5 + 5 + 3 + 17));
}

TEST(CompletionRows, TellWhatCanNoLongerFollow) {
    const std::vector<CompletionRow> rows = MakeCompletionRows();
    EXPECT_THAT(RowOf(rows, "", "quiet").excluded, ElementsAre("quiet"));
    EXPECT_THAT(RowOf(rows, "", "query").excluded, IsEmpty());
    EXPECT_THAT(RowOf(rows, "query", "J").excluded, ElementsAre("J", "V"));
    EXPECT_THAT(RowOf(rows, "query", "D").excluded, ElementsAre("M", "S", ".A", ".B", "D", "V"));
    EXPECT_THAT(RowOf(rows, "query", ".A").excluded, ElementsAre(".A", ".B", "D", "V"));
    EXPECT_THAT(RowOf(rows, "query", "S").excludedByList, ElementsAre(".A", ".B"));
    EXPECT_THAT(RowOf(rows, "format", "erase").excluded,
                ElementsAre("label", "erase", "certify", "sequential", "finalize"));
    EXPECT_THAT(RowOf(rows, "service", "stop").excluded, ElementsAre("start", "stop", "restart"));
    EXPECT_THAT(RowOf(rows, "help", "<command>").excluded, ElementsAre("<command>"));
}

TEST(CompletionRows, TellTheKindOfEachValue) {
    const std::vector<CompletionRow> rows = MakeCompletionRows();
    EXPECT_EQ(RowOf(rows, "query", "J").value, "jukebox");
    EXPECT_EQ(RowOf(rows, "query", "V").value, "volume");
    EXPECT_EQ(RowOf(rows, "query", "M").value, "magazine");
    EXPECT_EQ(RowOf(rows, "query", "S").value, "slot");
    EXPECT_EQ(RowOf(rows, "query", "D").value, "drive");
    EXPECT_EQ(RowOf(rows, "query", "width").value, "number");
    EXPECT_EQ(RowOf(rows, "query", "columns").value, "columns");
    EXPECT_EQ(RowOf(rows, "query", "sort").value, "sort");
    EXPECT_EQ(RowOf(rows, "query", "separator").value, "text");
    EXPECT_EQ(RowOf(rows, "query", "slots").value, "");
    EXPECT_EQ(RowOf(rows, "help", "<command>").value, "topic");
}

TEST(CompletionRows, BeginAQueryWithItsObjects) {
    Keywords keywords;
    for (const CompletionRow& row : MakeCompletionRows()) {
        if (row.level == "query") keywords.push_back(row.keyword);
    }
    keywords.resize(7);
    EXPECT_THAT(keywords, ElementsAre("jukeboxes", "magazines", "drives", "slots", "volumes", "J", "M"));
}

TEST(LetterRows, TellWhichObjectsHaveTheLetter) {
    const std::vector<LetterRow> rows = MakeLetterRows();
    ASSERT_THAT(rows, SizeIs(26));
    EXPECT_EQ(rows.front().letter, "S");
    EXPECT_THAT(rows.front().objects, ElementsAre("jukeboxes", "magazines"));
    EXPECT_THAT(rows.back().objects, ElementsAre("jukeboxes", "magazines", "drives", "slots", "volumes"));
}

TEST(CompletionRows, NameTheServiceInTheirHelp) {
    EXPECT_EQ(RowOf(MakeCompletionRows(), "", "service").help, "start/stop/restart the Carvoline service");
}

TEST(HelpTopics, AreTheCommandsWithAText) {
    EXPECT_THAT(HelpTopics(), ElementsAre("service", "import", "export", "scan", "format", "enable",
                                          "disable", "name", "query"));
}

TEST(ShellTable, QuotesEachLineForItsShell) {
    EXPECT_THAT(ShellTable("bash", "columns"),
                HasSubstr("'N|jukeboxes magazines drives slots|Name of the jukebox.'\n"));
    EXPECT_THAT(ShellTable("fish", "topics"), HasSubstr("'service' \\\n'import' \\\n"));
    EXPECT_THAT(ShellTable("powershell", "grammar"),
                HasSubstr("'query|.B||||.A .B D V||medium side B, eg. S 1 .B'\n"));
}

TEST(ShellTable, RefusesWhatThereIsNot) {
    EXPECT_THROW((void)ShellTable("tcsh", "columns"), std::runtime_error);
    EXPECT_THROW((void)ShellTable("bash", "rows"), std::runtime_error);
}

TEST(FillTemplate, ReplacesMarksOnLinesOfTheirOwn) {
    const auto blockOf = [](const std::string& mark) { return mark + " 1\n\n" + mark + " 2\n"; };
    EXPECT_EQ(FillTemplate("a\n  @list of things@\nb @c@ d\n@\n@@\n", blockOf),
              "a\n  list of things 1\n\n  list of things 2\nb @c@ d\n@\n@@\n");
}

TEST(FillTemplate, PutsTheVersionAnywhere) {
    const std::string filled =
        FillTemplate("x @version@ y\n", [](const std::string&) { return std::string(); });
    EXPECT_THAT(filled, testing::MatchesRegex("x [0-9]+\\.[0-9]+\\.[0-9]+ y\n"));
}

}  // namespace
}  // namespace krvcmd
