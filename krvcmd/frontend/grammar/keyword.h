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
    // Declared for readers of the grammar: the parser accepts lists and ranges for every number.
    bool listAllowed = false;
    bool rangeAllowed = false;
};

enum class KeywordKind : int32_t { Option = 0, Command = 1, Parameter = 2 };

// One keyword of the command line. A keyword that begins with "<" is a placeholder: it stands for
// a free word. Nodes are constants; a node is identified by its address.
struct KeywordNode {
    using Table = std::span<const KeywordNode* const>;

    std::string_view keyword;
    std::string_view help;
    KeywordKind kind = KeywordKind::Parameter;
    bool dashAllowed = false;  // may also be written with a leading "-" or "/"
    // Keywords that are tied to this one; declared data that parsing does not need.
    std::span<const std::string_view> conflicts;
    std::span<const ValueSpec> values;  // empty: the keyword takes no value
    Table children;                     // commands only: their parameters, in the order shown by help

    bool IsPlaceholder() const { return keyword.starts_with('<'); }
};

// Both comparisons are exact and case-sensitive, with one peculiarity: a blank ends the text of
// its piece of 31 characters, so "query x" equals "query".

// True when the word and the keyword are equal.
bool KeywordEquals(std::string_view word, std::string_view keyword);

// True when the word is a leading part of the keyword. An empty word begins every keyword.
bool KeywordStartsWith(std::string_view word, std::string_view keyword);

// The one node that the word selects, or null. An exact keyword (with "-" or "/" before it where
// the node allows that) always wins; otherwise the word must begin exactly one of the candidates.
const KeywordNode* FindKeyword(KeywordNode::Table candidates, std::string_view word);

}  // namespace krvcmd
