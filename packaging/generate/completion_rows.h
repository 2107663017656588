#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace krvcmd {

// What completion knows of one keyword at one place of the command line.
struct CompletionRow {
    std::string_view level;  // keyword of the command that it belongs to; empty: before the command
    std::string_view keyword;
    bool isCommand = false;
    bool dashAllowed = false;
    std::string_view value;                        // what its value is, see ValueWord; empty: it takes none
    std::vector<std::string_view> excluded;        // keywords that can no longer follow it, itself among them
    std::vector<std::string_view> excludedByList;  // more of them when its value is a list or a range
    std::string help;
};

// One row for each keyword, level by level, in the order of the grammar.
std::vector<CompletionRow> MakeCompletionRows();

// Keywords of the commands that have a help text of their own.
std::vector<std::string_view> HelpTopics();

// True when the address parameters of `keywords` can stand together on the line of one command that
// knows `known`, perhaps after adding further ones. Those in `multiple` have a list as their value.
bool CanStandTogether(const std::vector<std::string_view>& known,
                      const std::vector<std::string_view>& keywords,
                      const std::vector<std::string_view>& multiple);

}  // namespace krvcmd
