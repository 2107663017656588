#include "krvcmd/frontend/grammar/command_grammar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "krvcmd/frontend/grammar/keyword.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using std::string;

string Keywords(KeywordNode::Table table) {
    string text;
    for (const KeywordNode* node : table)
        text.append(text.empty() ? "" : " ").append(node->keyword);
    return text;
}

// The forms of a value in one word each: "text", "number" or "id", with "*" where the grammar declares
// lists and ranges.
string Forms(const KeywordNode& node) {
    string text;
    for (const ValueSpec& form : node.values) {
        text += text.empty() ? "" : " ";
        if (form.valueType == ValueSpec::kText) {
            text += "text";
        } else if (form.valueType == ValueSpec::kNumber) {
            text += form.idForm == ValueSpec::kId ? "id" : "number";
        } else {
            text += "unusable";
        }
        EXPECT_EQ(form.listAllowed, form.rangeAllowed) << node.keyword;
        if (form.listAllowed) text += "*";
    }
    return text.empty() ? "none" : text;
}

string Conflicts(const KeywordNode& node) {
    if (node.conflicts.empty()) return "no entry";
    string text;
    for (const std::string_view keyword : node.conflicts)
        text.append("[").append(keyword).append("]");
    return text;
}

struct KeywordRow {
    string keyword;
    string dash;  // "yes": may be written with "-" or "/"
    string value;
    string conflicts;
    string help;
};

void ExpectRow(const KeywordNode& node, const KeywordRow& row, KeywordKind kind) {
    EXPECT_EQ(node.kind, kind) << row.keyword;
    EXPECT_EQ(node.dashAllowed, row.dash == "yes") << row.keyword;
    EXPECT_EQ(Forms(node), row.value) << row.keyword;
    EXPECT_EQ(Conflicts(node), row.conflicts) << row.keyword;
    EXPECT_EQ(node.help, row.help) << row.keyword;
    EXPECT_EQ(node.IsPlaceholder(), row.keyword.front() == '<') << row.keyword;
}

// Every parameter node of every command, each once.
std::vector<const KeywordNode*> AllParameters() {
    std::set<const KeywordNode*> nodes;
    for (const KeywordNode* command : CommandGrammar::TopLevel()) {
        nodes.insert(command->children.begin(), command->children.end());
    }
    nodes.insert(CommandGrammar::Delete().children.begin(), CommandGrammar::Delete().children.end());
    return {nodes.begin(), nodes.end()};
}

TEST(CommandGrammar, ListsOptionsAndCommandsInTheOrderOfHelp) {
    EXPECT_EQ(Keywords(CommandGrammar::TopLevel()),
              "quiet server help ? service import export scan format enable disable name query");
}

TEST(CommandGrammar, OffersEachCommandItsParametersInTheOrderOfHelp) {
    const std::pair<string, string> rows[] = {
        {"help", "<command>"},
        {"?", ""},
        {"service", "start stop restart"},
        {"import", "J M S repeat"},
        {"export", "J M S V repeat"},
        {"scan", "J M S V"},
        {"format", "J M S .A .B V label erase certify sequential finalize"},
        {"enable", "J M D S V"},
        {"disable", "J M D S V"},
        {"name", "J V <new name>"},
        {"query",
         "J M S .A .B D V columns sort width notable separator jukeboxes magazines drives slots volumes"},
    };
    for (const auto& [command, parameters] : rows) {
        EXPECT_EQ(Keywords(test::Node(command).children), parameters) << command;
    }
    EXPECT_EQ(Keywords(CommandGrammar::Delete().children), "V");
}

TEST(CommandGrammar, DescribesTheOptions) {
    const KeywordRow rows[] = {
        {"quiet", "yes", "none", "[]", "quiet mode (suppress banner and success message)"},
        {"server", "yes", "text", "[]", "specify server name to connect with"},
    };
    for (const KeywordRow& row : rows)
        ExpectRow(test::Node(row.keyword), row, KeywordKind::Option);
}

TEST(CommandGrammar, DescribesTheCommands) {
    const KeywordRow rows[] = {
        {"help", "no", "none", "[help]", "usage/help output"},
        {"?", "yes", "none", "[]", "usage/help output"},
        {"service", "no", "none", "[service]", "start/stop/restart the [ProductName] service"},
        {"import", "no", "none", "[export]", "import one or more media"},
        {"export", "no", "none", "[import]", "export one or more media"},
        {"scan", "no", "none", "[scan]", "rescan one or more slots"},
        {"format", "no", "none", "[format]", "erase/format/finalize one or more volumes"},
        {"enable", "no", "none", "[enable]", "enable jukeboxes, magazines, drives or volumes"},
        {"disable", "no", "none", "[disable]", "disable jukeboxes, magazines, drives or volumes"},
        {"name", "no", "none", "[name]", "rename jukebox or set the directory name for volumes"},
        {"query", "no", "none", "[query]", "query information"},
    };
    for (const KeywordRow& row : rows)
        ExpectRow(test::Node(row.keyword), row, KeywordKind::Command);
    ExpectRow(CommandGrammar::Delete(),
              {"delete", "no", "none", "[delete]", "remove offline volumes from database"},
              KeywordKind::Command);
}

TEST(CommandGrammar, DescribesTheParameters) {
    const KeywordRow rows[] = {
        {"J", "no", "text id", "[]", "jukebox ID or jukebox name, eg. J @17 or J MyBox"},
        {"M", "no", "number*", "[]", "magazine number, eg. M 1 or M1"},
        {"S", "no", "number*", "[]", "slot number in magazine, or absolute slot in jukebox"},
        {"D", "no", "number", "[]", "drive number, eg. D 1 or D1"},
        {"V", "no", "id*", "[]", "volume ID, eg. V @273"},
        {".A", "no", "none", "[.B]", "medium side A, eg. S 1 .A"},
        {".B", "no", "none", "[.A]", "medium side B, eg. S 1 .B"},
        {"repeat", "no", "number", "[]", "specifies number of repeats, eg. repeat=5"},
        {"label", "no", "text", "[]", "volume label string"},
        {"erase", "no", "none", "[]", "erase volume"},
        {"certify", "no", "none", "[]", "certify volume"},
        {"sequential", "no", "none", "[]", "sequential"},
        {"finalize", "no", "none", "[]", "finalize volume"},
        {"columns", "no", "text", "[]", "specify columns to output"},
        {"sort", "no", "text", "[]", "the table row sort sequence"},
        {"width", "no", "number", "[]", "the table width"},
        {"notable", "yes", "none", "[]", "unformatted output"},
        {"separator", "yes", "text", "[]", "output separator"},
        {"jukeboxes", "yes", "none", "[]", "information about jukeboxes"},
        {"magazines", "yes", "none", "[]", "information about magazines"},
        {"drives", "yes", "none", "[]", "information about drives"},
        {"slots", "yes", "none", "[]", "information about slots"},
        {"volumes", "yes", "none", "[]", "information about volumes"},
        {"start", "no", "none", "[]", "start service"},
        {"stop", "no", "none", "[]", "stop service"},
        {"restart", "no", "none", "[]", "restart service"},
        {"<command>", "no", "text", "no entry", "command keyword, to get further information"},
        {"<new name>", "no", "text", "no entry", "the new name"},
    };
    const std::vector<const KeywordNode*> nodes = AllParameters();
    EXPECT_EQ(nodes.size(), std::size(rows));
    for (const KeywordNode* node : nodes) {
        const auto row = std::ranges::find(rows, node->keyword, &KeywordRow::keyword);
        ASSERT_NE(row, std::end(rows)) << node->keyword;
        ExpectRow(*node, *row, KeywordKind::Parameter);
    }
}

TEST(CommandGrammar, KeepsTheNodesThatNoLineCanReach) {
    ASSERT_EQ(Keywords(CommandGrammar::Unreachable()), "yes rescan configuration detectsequence filter");
    const KeywordNode::Table nodes = CommandGrammar::Unreachable();
    const KeywordRow rows[] = {
        {"yes", "yes", "none", "[]", "help - default"},
        {"rescan", "no", "none", "[]", "reinitialize the slot in the jukebox"},
        {"configuration", "no", "none", "[]", "output configuration"},
        {"detectsequence", "no", "none", "[]", "output detect sequence"},
        {"filter", "yes", "text", "[]", "filter table output"},
    };
    for (size_t i = 0; i < nodes.size(); ++i)
        ExpectRow(*nodes[i], rows[i], i == 0 ? KeywordKind::Option : KeywordKind::Parameter);
}

TEST(CommandGrammar, LetsEveryKeywordSelectItselfAtItsLevel) {
    const auto expectSelfSelection = [](KeywordNode::Table table) {
        for (const KeywordNode* node : table) {
            EXPECT_EQ(FindKeyword(table, node->keyword), node) << node->keyword;
            if (!node->dashAllowed) continue;
            EXPECT_EQ(FindKeyword(table, "-" + string(node->keyword)), node) << node->keyword;
            EXPECT_EQ(FindKeyword(table, "/" + string(node->keyword)), node) << node->keyword;
        }
    };
    expectSelfSelection(CommandGrammar::TopLevel());
    for (const KeywordNode* node : CommandGrammar::TopLevel())
        expectSelfSelection(node->children);
}

}  // namespace
}  // namespace krvcmd
