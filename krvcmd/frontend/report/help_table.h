#pragma once

#include <span>
#include <string_view>

#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {

// The detailed help of one entry of the grammar's top-level table; an empty text is not printed.
struct HelpEntry {
    const KeywordNode* node = nullptr;  // null: the entry is skipped
    std::string_view description;       // printed first
    std::string_view syntax;            // printed under "syntax:"
    std::string_view legend;            // explains the placeholders of the syntax; never printed
    std::string_view example;           // printed under "example:"
};

// One entry for each entry of the top-level table, in the same order.
std::span<const HelpEntry> HelpTable();

// Texts that belong to no single command.
namespace help_text {
extern const std::string_view kUsage;
extern const std::string_view kIntroduction;
extern const std::string_view kExamples;
extern const std::string_view kAbbreviationNote;
extern const std::string_view kHelpOnHelp;
extern const std::string_view kColumnIdentifiers;  // stands above the list of the identifiers
}  // namespace help_text

}  // namespace krvcmd
