#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace krvcmd {

// One accepted form of a keyword's value.
struct ValueSpec {
    static constexpr std::uint32_t kText = 2;
    static constexpr std::uint32_t kNumber = 3;
    static constexpr std::uint32_t kPlain = 0;
    static constexpr std::uint32_t kId = 8;  // written with a leading "@"

    std::uint32_t valueType = 0;  // kText or kNumber; any other value makes the keyword unusable
    std::uint32_t idForm = kPlain;
    // Declared for readers of the grammar: the parser accepts lists and ranges for every number.
    bool listAllowed = false;
    bool rangeAllowed = false;
};

enum class KeywordKind : std::int32_t { Option = 0, Command = 1, Parameter = 2 };

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

}  // namespace krvcmd
