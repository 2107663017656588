#include "packaging/generate/completion_rows.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>

#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/frontend/report/help_table.h"
#include "packaging/generate/fill_template.h"

namespace krvcmd {
namespace {

using std::string_view;
using Keywords = std::vector<string_view>;

// Alternatives that are in no table of the program: only one group of a line takes effect.
struct Alternatives {
    string_view command;
    std::vector<Keywords> groups;
};

const std::vector<Alternatives>& AllAlternatives() {
    static const std::vector<Alternatives> all = {
        {"service", {{"start"}, {"stop"}, {"restart"}}},  // exactly one may be given
        {"query", {{"jukeboxes"}, {"magazines"}, {"drives"}, {"slots"}, {"volumes"}}},  // only one is listed
        {"query", {{"width"}, {"notable"}}},  // unformatted rows have no width
        {"format", {{"erase"}, {"finalize"}, {"label", "certify", "sequential"}}},  // one of three operations
        {"export", {{"repeat"}, {"V"}}},  // a volume is exported once
    };
    return all;
}

// The keywords whose values can be completed.
struct KnownValue {
    string_view keyword;
    string_view value;
};
constexpr KnownValue kKnownValues[] = {
    // clang-format off
    {"J", "jukebox"}, {"M", "magazine"},     {"S", "slot"},    {"D", "drive"}, {"V", "volume"},
    {"sort", "sort"}, {"columns", "columns"}, {"<command>", "topic"},
    // clang-format on
};

// The kind of a keyword's value: one of kKnownValues, else number or text; empty without a value.
string_view ValueWord(const KeywordNode& node) {
    if (node.values.empty()) return {};
    for (const KnownValue& known : kKnownValues) {
        if (known.keyword == node.keyword) return known.value;
    }
    return node.values.front().valueType == ValueSpec::kText ? "text" : "number";
}

// The columns in which the rows of a query's object can have a value.
struct ObjectLetters {
    string_view keyword;
    string_view letters;
};
constexpr ObjectLetters kObjectLetters[] = {
    {"jukeboxes", "JNoFDMSPRC"},     {"magazines", "JNmSo"},          {"drives", "JNdoPRC"},
    {"slots", "JNmsoatLIyYxXzlfvn"}, {"volumes", "LIyYxXzlfovnmsat"},
};

constexpr std::array<string_view, 7> kAddressKeywords = {"J", "M", "S", ".A", ".B", "D", "V"};

bool Contains(std::span<const string_view> keywords, string_view keyword) {
    return std::ranges::find(keywords, keyword) != keywords.end();
}

Keywords KeywordsOf(KeywordNode::Table table) {
    Keywords keywords;
    for (const KeywordNode* node : table)
        keywords.push_back(node->keyword);
    return keywords;
}

bool IsAddress(const Keywords& chosen, const Keywords& multiple) {
    std::vector<KeywordNode> nodes(chosen.size());
    std::vector<Parameter> parameters(chosen.size());
    for (size_t i = 0; i < chosen.size(); ++i) {
        nodes[i].keyword = chosen[i];
        parameters[i].node = &nodes[i];
        parameters[i].ranges.assign(Contains(multiple, chosen[i]) ? 2 : 1, NumberRange{1, 1, false});
    }
    AddressKind kind{};
    ItemAddressList addresses;
    return ReadItemAddress(parameters, kind, addresses).IsOk();
}

bool AreTied(const KeywordNode& node, const KeywordNode& other) {
    return Contains(node.conflicts, other.keyword);
}

bool AreAlternatives(string_view command, string_view keyword, string_view other) {
    for (const Alternatives& alternatives : AllAlternatives()) {
        if (alternatives.command != command) continue;
        const auto groupOf = [&](string_view word) {
            return std::ranges::find_if(alternatives.groups,
                                        [&](const Keywords& group) { return Contains(group, word); });
        };
        const auto group = groupOf(keyword);
        const auto otherGroup = groupOf(other);
        const auto none = alternatives.groups.end();
        if (group != none && otherGroup != none && group != otherGroup) return true;
    }
    return false;
}

void FillExclusions(CompletionRow& row, const KeywordNode& node, KeywordNode::Table siblings) {
    const Keywords known = KeywordsOf(siblings);
    for (const KeywordNode* sibling : siblings) {
        const string_view other = sibling->keyword;
        if (other == node.keyword || AreTied(node, *sibling) ||
            AreAlternatives(row.level, node.keyword, other) ||
            !CanStandTogether(known, {node.keyword, other}, {})) {
            row.excluded.push_back(other);
        } else if (!CanStandTogether(known, {node.keyword, other}, {node.keyword})) {
            row.excludedByList.push_back(other);
        }
    }
}

CompletionRow MakeRow(string_view level, const KeywordNode& node, KeywordNode::Table siblings) {
    CompletionRow row;
    row.level = level;
    row.keyword = node.keyword;
    row.isCommand = node.kind == KeywordKind::Command;
    row.dashAllowed = node.dashAllowed;
    row.value = ValueWord(node);
    row.help = ProgramText(node.help);
    if (node.kind == KeywordKind::Option) row.excluded = {node.keyword};
    if (node.kind == KeywordKind::Parameter) FillExclusions(row, node, siblings);
    return row;
}

bool IsQueryObject(const CompletionRow& row) {
    return row.level == "query" &&
           std::ranges::find(QueryObjects(), row.keyword, &QueryObjectInfo::keyword) != QueryObjects().end();
}

// Fails after a keyword was renamed without its alternatives.
void CheckAlternatives() {
    for (const Alternatives& alternatives : AllAlternatives()) {
        Keywords known;
        for (const KeywordNode* node : CommandGrammar::TopLevel()) {
            if (node->keyword == alternatives.command) known = KeywordsOf(node->children);
        }
        for (const Keywords& group : alternatives.groups) {
            for (const string_view keyword : group) {
                if (Contains(known, keyword)) continue;
                throw std::runtime_error("no parameter of " + std::string(alternatives.command) + ": " +
                                         std::string(keyword));
            }
        }
    }
}

}  // namespace

std::span<const string_view> AddressKeywords() {
    return kAddressKeywords;
}

bool CanStandTogether(const std::vector<string_view>& known, const std::vector<string_view>& keywords,
                      const std::vector<string_view>& multiple) {
    // Each choice is a number with one bit for each address keyword.
    for (unsigned choice = 0; choice < (1U << kAddressKeywords.size()); ++choice) {
        Keywords chosen;
        bool isKnown = true;
        bool hasAll = true;
        for (size_t i = 0; i < kAddressKeywords.size(); ++i) {
            const string_view keyword = kAddressKeywords[i];
            if ((choice >> i & 1U) != 0) {
                chosen.push_back(keyword);
                isKnown = isKnown && Contains(known, keyword);
            } else if (Contains(keywords, keyword)) {
                hasAll = false;
            }
        }
        if (isKnown && hasAll && IsAddress(chosen, multiple)) return true;
    }
    return false;
}

std::vector<CompletionRow> MakeCompletionRows() {
    CheckAlternatives();
    const KeywordNode::Table topLevel = CommandGrammar::TopLevel();
    std::vector<CompletionRow> rows;
    for (const KeywordNode* node : topLevel)
        rows.push_back(MakeRow({}, *node, topLevel));
    for (const KeywordNode* command : topLevel) {
        for (const KeywordNode* child : command->children) {
            rows.push_back(MakeRow(command->keyword, *child, command->children));
        }
    }
    // A query needs its object first of all.
    const auto query = std::ranges::find(rows, string_view("query"), &CompletionRow::level);
    (void)std::stable_partition(query, rows.end(), IsQueryObject);
    return rows;
}

std::vector<LetterRow> MakeLetterRows() {
    std::vector<LetterRow> rows;
    for (const Ostrel::UI::Console::ColumnInfo& column : Ostrel::UI::Console::GetColumnCatalogue()) {
        LetterRow& row = rows.emplace_back(LetterRow{column.letter, {}, column.description});
        for (const ObjectLetters& object : kObjectLetters) {
            if (object.letters.find(column.letter) != string_view::npos)
                row.objects.push_back(object.keyword);
        }
    }
    return rows;
}

std::vector<string_view> HelpTopics() {
    Keywords topics;
    for (const HelpEntry& entry : HelpTable()) {
        if (entry.node != nullptr && !entry.syntax.empty()) topics.push_back(entry.node->keyword);
    }
    return topics;
}

}  // namespace krvcmd
