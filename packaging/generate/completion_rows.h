#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace krvcmd {

// What completion knows of one keyword at one place of the command line.
struct CompletionRow {
    std::string_view level;  // keyword of its command; empty = before the command
    std::string_view keyword;
    bool isCommand = false;
    bool dashAllowed = false;
    std::string_view value;                        // the kind of its value; empty = it takes none
    std::vector<std::string_view> excluded;        // keywords that can no longer follow, itself among them
    std::vector<std::string_view> excludedByList;  // further ones when its value is a list or a range
    std::string help;
};

// A column letter of a query.
struct LetterRow {
    std::string_view letter;
    std::vector<std::string_view> objects;  // the keywords of the objects that have a value in this column
    std::string_view description;
};

// One row for each keyword, level by level, in the order of the grammar, but the objects of a query first.
std::vector<CompletionRow> MakeCompletionRows();

// One row for each letter, in the order of the help.
std::vector<LetterRow> MakeLetterRows();

// Keywords of the commands with a help text.
std::vector<std::string_view> HelpTopics();

// J, M, S, .A, .B, D and V.
std::span<const std::string_view> AddressKeywords();

// Whether the address keywords can be part of one address of a command that knows the keywords `known`. Those
// in `multiple` have a list as their value.
bool CanStandTogether(const std::vector<std::string_view>& known,
                      const std::vector<std::string_view>& keywords,
                      const std::vector<std::string_view>& multiple);

}  // namespace krvcmd
