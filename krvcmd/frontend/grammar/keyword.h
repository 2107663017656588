#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace krvcmd {

// One accepted form of a keyword's value.
struct ValueSpec {
    static constexpr uint32_t kText = 2;
    static constexpr uint32_t kNumber = 3;
    static constexpr uint32_t kPlain = 0;
    static constexpr uint32_t kId = 8;  // written with a leading "@"

    uint32_t valueType = 0;  // kText or kNumber; any other value makes the keyword unusable
    uint32_t idForm = kPlain;
    // Not consulted by the parser, which accepts lists and ranges for every number.
    bool listAllowed = false;
    bool rangeAllowed = false;
};

enum class KeywordKind : int32_t { Option = 0, Command = 1, Parameter = 2 };

// One keyword of the command line. A keyword that begins with "<" is a placeholder for a free word. Nodes are
// constants and identified by their addresses.
struct KeywordNode {
    using Table = std::span<const KeywordNode* const>;

    std::string_view keyword;
    std::string_view help;
    KeywordKind kind = KeywordKind::Parameter;
    bool dashAllowed = false;  // may also be written with a leading "-" or "/"
    // Keywords that are tied to this one; not consulted by the parser.
    std::span<const std::string_view> conflicts;
    std::span<const ValueSpec> values;  // empty: the keyword takes no value
    Table children;                     // of a command: its parameters, in the order of help

    bool IsPlaceholder() const { return keyword.starts_with('<'); }
};

// Both comparisons are exact and case-sensitive, but they take texts in pieces of 31 characters, and a blank
// ends its piece: "query x" equals "query", and " x" equals the empty text.

// True when the word and the keyword are equal.
bool KeywordEquals(std::string_view word, std::string_view keyword);

// True when the word is a leading part of the keyword. An empty word begins every keyword.
bool KeywordStartsWith(std::string_view word, std::string_view keyword);

// The node that the word selects, or null. An exact keyword (with "-" or "/" before it where the node allows
// that) always wins; otherwise the word must be a leading part of exactly one candidate.
const KeywordNode* FindKeyword(KeywordNode::Table candidates, std::string_view word);

}  // namespace krvcmd
